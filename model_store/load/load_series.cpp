#include "model_store/load/load_parts.hpp"

#include <cstddef>
#include <string>

namespace velm {

namespace {

/// Reports that `parent` lacks the row of `segment`, its first missing one.
void report_lack(LoadState& load, const TableShape& table, const ParentKey& parent, std::int64_t segment)
{
    const Address rows{table.name, "segment", {parent[0], table.keys > 2 ? parent[1] : 0}};
    load.problems.add(database_finding(rows, "", "there is no row for segment " + std::to_string(segment),
                                       "give a row for each segment"));
}

} // namespace

void load_series(LoadState& load, std::string_view table, const ParentKeys& parents, const FindSeries& find,
                 std::int64_t most_pairs)
{
    if (load.reads != Rows::all) {
        return;
    }
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
    };

    TableReader row(load, table, &parents);
    while (row.next()) {
        if (row.enters_parent()) {
            deliver();
            series = load.sound() ? &find(row) : nullptr;
        }
        if (row.has_key() && row.number() - 1 == most_pairs) {
            row.report("number", std::to_string(row.number()),
                       "is beyond the " + std::to_string(most_pairs) + " pairs that a series here can have",
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

void load_for_each_segment(LoadState& load, std::string_view table, const ParentKeys& parents,
                           const std::function<void(TableReader& row)>& read)
{
    if (load.reads != Rows::all) {
        return;
    }
    const TableShape& shape = model_table(table);
    const std::vector<ParentKey>& awaited = parents.all(); // in order, as the rows are
    const auto last_segment = static_cast<std::int64_t>(load.segments.all().size());
    std::size_t place = 0;
    std::int64_t reached = 0; // by the parent at `place`
    const auto leave_parent = [&] {
        if (reached < last_segment) {
            report_lack(load, shape, awaited[place], reached + 1);
        }
        ++place;
        reached = 0;
    };

    TableReader row(load, table, &parents);
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

} // namespace velm
