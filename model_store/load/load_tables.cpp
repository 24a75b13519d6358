#include "model_store/load/load_parts.hpp"

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace velm {

namespace {

/// Goes to items that nobody keeps.
struct StepAside {
    auto& operator()(auto& list, std::size_t /*level*/) const
    {
        return list.empty() ? list.emplace_back() : list.front();
    }
    auto& type(auto& list) const { return (*this)(list, 0); }
};

/// Reads a row of an item into a new one; into none when the load is not sound, for the row's problems alone.
void load_item(LoadState& load, Model& model, TableId id, TableReader& row)
{
    const auto read = [&](const auto& table, auto& item) { row.read(table, item); };
    if (load.sound()) {
        with_item(id, model, StepTo{row.numbers(), row.depth()}, read);
    } else {
        Model aside;
        with_item(id, aside, StepAside{}, read);
    }
}

void load_items(LoadState& load, Model& model, TableId id, std::string_view table)
{
    TableReader row(load, table);
    while (row.next()) {
        load_item(load, model, id, row);
    }
    for (const auto& [above, bottom] : load.bottoms) { // which may come behind the segment above it
        check_segment(load, above, bottom);
    }
    load.bottoms.clear();
}

void load_run(LoadState& load, Model& model)
{
    TableReader row(load, "model");
    if (!row.next()) {
        load.problems.add(database_finding({"model"}, "", "there is no row",
                                           "run INSERT INTO model DEFAULT VALUES and set what the run needs"));
        return;
    }
    load_item(load, model, TableId::model, row);
    if (row.next()) {
        row.report("", "", "there is more than one row", "keep the row of number 1 only");
    }
}

/// Reads a table of time pairs into the series that its rows belong to.
void load_series(LoadState& load, Model& model, const SeriesTable& table)
{
    // pairs are gathered here and copied to size: a vector that grows in its place would keep up to half its room idle
    TimeSeries gathered;
    TimeSeries* series = nullptr;
    const auto deliver = [&] {
        if (series != nullptr && load.sound()) {
            series->times.assign(gathered.times.begin(), gathered.times.end());
            series->values.assign(gathered.values.begin(), gathered.values.end());
        }
        gathered.times.clear();
        gathered.values.clear();
        series = nullptr;
    };

    TableReader row(load, table.name);
    while (row.next()) {
        if (row.enters_parent()) {
            deliver();
            if (load.sound()) {
                with_item(table.owner, model, StepTo{row.numbers()}, [&](const auto& /*table*/, auto& owner) {
                    if constexpr (requires { owner.series; }) {
                        series = &owner.series;
                    }
                });
            }
        }
        if (row.has_key() && row.number() - 1 == static_cast<std::int64_t>(table.most_pairs)) {
            row.report("number", std::to_string(row.number()),
                       "is beyond the " + std::to_string(table.most_pairs) + " pairs that a series here can have",
                       "thin the series out");
        }
        const float time = row.real("time");
        const float value = row.real("value");
        if (load.sound()) {
            gathered.times.push_back(time);
            gathered.values.push_back(value);
        }
    }
    deliver();
}

/// Reads a table that has a row for each segment under each of its parents, and reports the rows that it lacks.
void load_for_each_segment(LoadState& load, std::string_view table, const std::function<void(TableReader& row)>& read)
{
    TableReader row(load, table);
    const std::vector<ParentKey>& awaited = row.parents().all(); // in order, as the rows are
    const auto last_segment = static_cast<std::int64_t>(load.segments.all().size());
    std::size_t place = 0;
    std::int64_t reached = 0; // by the parent at `place`
    const auto leave_parent = [&] {
        if (reached < last_segment) {
            const Address rows{row.table(), "segment", {awaited[place][0], row.depth() > 1 ? awaited[place][1] : 0}};
            load.problems.add(database_finding(rows, "", "there is no row for segment " + std::to_string(reached + 1),
                                               "give a row for each segment"));
        }
        ++place;
        reached = 0;
    };

    while (row.next()) {
        while (row.has_key() && place < awaited.size() && awaited[place] < row.parent()) {
            leave_parent();
        }
        if (row.has_key() && place < awaited.size() && awaited[place] == row.parent()) {
            reached = row.number();
        }
        read(row);
    }
    while (place < awaited.size()) {
        leave_parent();
    }
}

void load_initial_conditions(LoadState& load, Model& model)
{
    load_for_each_segment(load, "initial_condition",
                          [&](TableReader& row) { load_item(load, model, TableId::initial_condition, row); });
}

void load_parameter_values(LoadState& load, Model& model)
{
    load_for_each_segment(load, "parameter_value", [&](TableReader& row) {
        const float value = row.real("value");
        if (load.sound()) {
            with_item(TableId::parameter, model, StepTo{row.numbers()}, [&](const auto& /*table*/, auto& parameter) {
                if constexpr (requires { parameter.values; }) {
                    parameter.values.push_back(value);
                }
            });
        }
    });
}

} // namespace

void load_tables(LoadState& load, Model& model)
{
    load_run(load, model);
    for (const TableKey& key : table_keys) {
        const std::string_view name = key.table;
        const auto* const series = std::ranges::find(series_tables, name, &SeriesTable::name);
        const bool has_many_rows =
            series != series_tables.end() || name == "initial_condition" || name == "parameter_value";
        if (has_many_rows && load.reads != Rows::all) {
            continue;
        }
        if (series != series_tables.end()) {
            load_series(load, model, *series);
        } else if (name == "initial_condition") {
            load_initial_conditions(load, model);
        } else if (name == "parameter_value") {
            load_parameter_values(load, model);
        } else {
            for_each_table([&](TableId id, const auto& table) {
                if (table.name == name) {
                    load_items(load, model, id, name);
                }
            });
        }
    }
}

} // namespace velm
