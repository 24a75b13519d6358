#include "model_store/model_store.hpp"
#include "model_store/sqlite/open_model.hpp"

#include <cmath>
#include <string>

namespace velm {

namespace {

std::vector<SegmentPlace> places_in(const Database& database, ProblemList& problems)
{
    const std::int64_t segments = database.integer("SELECT count(*) FROM segment");
    std::vector<SegmentPlace> places;
    Statement row(database, "SELECT segment, x, y FROM segment_place ORDER BY 1");
    while (row.step()) {
        const std::int64_t segment = sqlite3_column_int64(row.handle(), 0);
        if (segment < 1 || segment > segments) {
            problems.add(database_finding({"segment_place", "segment", {segment}}, std::to_string(segment),
                                          "is not a segment of the model", "remove the row"));
        }
        for (const int column : {1, 2}) {
            const int type = sqlite3_column_type(row.handle(), column);
            if ((type != SQLITE_FLOAT && type != SQLITE_INTEGER) ||
                !std::isfinite(sqlite3_column_double(row.handle(), column))) {
                problems.add(database_finding({"segment_place", column == 1 ? "x" : "y", {segment}},
                                              std::string(row.text(column)), "is not a finite number",
                                              "store one, or remove the row"));
            }
        }
        places.push_back({static_cast<std::int32_t>(segment), sqlite3_column_double(row.handle(), 1),
                          sqlite3_column_double(row.handle(), 2)});
    }
    problems.throw_if_any();
    return places;
}

} // namespace

std::vector<SegmentPlace> load_segment_places(const std::filesystem::path& file)
{
    ProblemList problems(LoadOptions().most_problems);
    try {
        const Database database = open_model(file, problems);
        return has_table(database, "segment_place") ? places_in(database, problems) : std::vector<SegmentPlace>();
    } catch (const SqliteError& error) {
        problems.add(file_problem(file, error, "segment_place"));
        problems.throw_if_any();
        throw;
    }
}

} // namespace velm
