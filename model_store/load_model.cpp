#include "model_store/load_model.hpp"

#include "model_store/changed_copy.hpp"
#include "model_store/load_parts.hpp"
#include "model_store/open_model.hpp"

namespace velm {

namespace {

Model load(const std::filesystem::path& file, const LoadOptions& options, bool keep)
{
    ProblemList problems(options.most_problems);
    Model model;
    std::string table;
    try {
        Database database = open_model(file, problems);
        if (options.quick_check) {
            check_quickly(database, file, problems);
        }
        if (!options.changes.text.empty()) {
            database = changed_copy(database, options.changes, options.on_change);
        }
        LoadState load{database, problems, options, table, keep};
        load_tables(load, model);
        if (options.on_progress) {
            options.on_progress(load.rows);
        }
    } catch (const SqliteError& error) {
        problems.add(file_problem(file, error, table));
    }
    problems.throw_if_any();
    return model;
}

} // namespace

Model load_model(const std::filesystem::path& database, const LoadOptions& options)
{
    return load(database, options, true);
}

void check_model(const std::filesystem::path& database, const LoadOptions& options)
{
    load(database, options, false);
}

} // namespace velm
