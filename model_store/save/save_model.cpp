#include "model/items.hpp"
#include "model/words.hpp"
#include "model_store/load/load_model.hpp"
#include "model_store/save/table_writer.hpp"
#include "model_store/sqlite/new_file.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace velm {

namespace {

std::string schema_for(std::span<const Address> missing)
{
    constexpr std::string_view no_null = " NOT NULL";
    std::string schema(model_schema());
    for (std::size_t at = 0; !missing.empty() && (at = schema.find(no_null)) != std::string::npos;) {
        schema.erase(at, no_null.size());
    }
    return schema;
}

void forget(const Database& database, const Address& value)
{
    const TableShape& table = model_table(value.table);
    std::string sql = "UPDATE " + table.name + " SET " + std::string(value.column) + " = NULL WHERE ";
    for (std::size_t key = 0; key < table.keys; ++key) {
        sql += (key == 0 ? "" : " AND ") + table.columns[key] + " = " + std::to_string(value.numbers.at(key));
    }
    database.run(sql.c_str());
}

/// All that a load refuses, but for the NULLs in the place of missing values.
void check_but_for_missing(const std::filesystem::path& file, std::size_t missing)
{
    LoadOptions options;
    options.most_problems += missing;
    try {
        check_model(file, options);
    } catch (const StoreError& error) {
        const auto is_null = [](const Finding& problem) { return problem.value == "NULL"; };
        if (error.problems.size() > missing || !std::all_of(error.problems.begin(), error.problems.end(), is_null)) {
            throw;
        }
    }
}

/// Visits the items of a model and inserts their rows, and those of the pairs and values that they own.
class ModelWriter {
public:
    ModelWriter(const Database& database, std::size_t segments, const SaveOptions& options)
        : segments_(segments), options_(options)
    {
        for (const TableShape& table : model_tables()) {
            writers_.try_emplace(table.name, database, table.name);
        }
    }

    template <class Table>
    void operator()(const Table& table, const RowNumbers& numbers, const auto& item)
    {
        writers_.at(table.name).insert(table, numbers, item);
        if constexpr (requires { item.initial_conditions; }) {
            require_each_segment("initial_condition", numbers, item.initial_conditions.size());
        } else if constexpr (requires { item.values; }) {
            require_each_segment("parameter_value", numbers, item.values.size());
            add("parameter_value", numbers, item.values.size(),
                [&](std::size_t place) { return std::array{item.values[place]}; });
        } else if constexpr (requires { item.series; }) {
            add_series(series_of(table.name), numbers, item.series);
        }
    }

    void finish()
    {
        for (auto& [name, writer] : writers_) {
            writer.flush();
        }
    }

private:
    void require_each_segment(std::string_view table, const RowNumbers& numbers, std::size_t count) const
    {
        if (count < segments_) {
            writers_.at(table).refuse(numbers, "segment", "",
                                      "there is no row for segment " + std::to_string(count + 1),
                                      "give a row for each segment");
        }
        if (count > segments_) {
            writers_.at(table).refuse(numbers, "segment", "", "there are rows for " + counted(count, "segment"),
                                      "give rows for the " + std::to_string(segments_) + " that there are");
        }
    }

    void add_series(const SeriesTable& table, const RowNumbers& numbers, const TimeSeries& series)
    {
        const std::size_t pairs = series.times.size();
        if (pairs != series.values.size()) {
            writers_.at(table.name)
                .refuse(numbers, "", "",
                        "there are " + counted(pairs, "time") + " and " + counted(series.values.size(), "value"),
                        "give as many of both");
        }
        if (pairs > table.most_pairs) {
            writers_.at(table.name)
                .refuse(numbers, "", "", "there are " + counted(pairs, "pair"),
                        "thin the series out to at most " + std::to_string(table.most_pairs));
        }
        add(table.name, numbers, pairs, [&](std::size_t pair) {
            return std::array{series.times[pair], series.values[pair]};
        });
    }

    /// Adds rows whose keys begin alike and end in a number that counts them.
    template <class RealsOf>
    void add(std::string_view table, RowNumbers numbers, std::size_t count, RealsOf reals_of)
    {
        constexpr std::uint64_t rows_between_reports = 1U << 16U;
        TableWriter& writer = writers_.at(table);
        for (std::size_t place = 0; place < count; ++place) {
            numbers[2] = static_cast<std::int64_t>(place) + 1;
            writer.add(numbers, reals_of(place));
            if (++rows_ % rows_between_reports == 0 && options_.on_progress) {
                options_.on_progress(rows_);
            }
        }
    }

    std::size_t segments_;
    const SaveOptions& options_;
    std::map<std::string_view, TableWriter> writers_;
    std::uint64_t rows_ = 0;
};

} // namespace

void save_model(const Model& model, const std::filesystem::path& database, const SaveOptions& options)
{
    NewFile file(database, options.standing);
    const auto fill = [&](const Database& opened) {
        opened.run("PRAGMA page_size = 16384"); // most models that are saved are large
        opened.run(schema_for(options.missing).c_str());
        ModelWriter rows(opened, model.segments.size(), options);
        for_each_item(model, rows);
        rows.finish();
        for (const Address& value : options.missing) {
            forget(opened, value);
        }
    };
    // what the schema lets pass but a load would refuse is found by reading it back before it gets its name; that finds
    // rows without those that they refer to as well, so that not each row has to look for its own
    file.write([&] {
        change_unshared(file.unnamed(), ForeignKeys::free, fill);
        check_but_for_missing(file.unnamed(), options.missing.size());
    });
    file.give_name();
}

} // namespace velm
