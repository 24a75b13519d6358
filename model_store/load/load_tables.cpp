#include "model/tables.hpp"
#include "model_store/load/load_parts.hpp"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace velm {

namespace {

/// Reads a table's rows into items; `list_of(row)` is the list that takes the row's, called while the load is sound.
template <class Table, class ListOf>
void load_items(LoadState& load, const Table& table, const ParentKeys* parents, ParentKeys* own, ListOf list_of)
{
    TableReader row(load, table.name, parents, own);
    while (row.next()) {
        typename Table::Item item;
        row.read(table, item);
        if (load.sound()) {
            list_of(row).push_back(std::move(item));
        }
    }
}

void load_run(LoadState& load, Model& model)
{
    TableReader row(load, "model");
    if (!row.next()) {
        load.problems.add(database_finding({"model"}, "", "there is no row",
                                           "run INSERT INTO model DEFAULT VALUES and set what the run needs"));
        return;
    }
    row.read(tables::model, model);
    if (row.next()) {
        row.report("", "", "there is more than one row", "keep the row of number 1 only");
    }
}

/// Also notes the segments' numbers, which the parts after it check against.
void load_segments(LoadState& load, Model& model)
{
    // a bottom segment may come after the segment above it, so it is looked up when all are known
    std::vector<std::pair<Address, std::int32_t>> bottoms;
    TableReader row(load, "segment", nullptr, &load.segments);
    while (row.next()) {
        Segment segment;
        row.read(tables::segment, segment);
        if (segment.bottom_segment != 0) {
            bottoms.emplace_back(row.address("bottom_segment"), segment.bottom_segment);
        }
        if (load.sound()) {
            model.segments.push_back(std::move(segment));
        }
    }
    for (const auto& [above, bottom] : bottoms) {
        if (!load.segments.contains({bottom, 0})) {
            load.problems.add(missing_segment(load, above, bottom));
        }
    }
}

/// The boundaries or the loads: tables of one form, which differ in their name.
template <class Table>
void load_segment_series(LoadState& load, Model& model, const Table& table, const ParentKeys& systems,
                         SegmentSeriesSet System::*set)
{
    ParentKeys items;
    const auto items_of = [&](const TableReader& row) -> auto&
    {
        return (model.systems[row.place(0)].*set).items;
    };
    load_items(load, table, &systems, &items, items_of);
    load_series(
        load, std::string(table.name) + "_value", items,
        [&](const TableReader& pair) -> TimeSeries& { return items_of(pair)[pair.place(1)].series; },
        SegmentSeries::most_pairs);
}

void load_systems(LoadState& load, Model& model)
{
    ParentKeys systems;
    load_items(
        load, tables::system, nullptr, &systems, [&](auto&) -> auto& { return model.systems; });
    load_for_each_segment(load, "initial_condition", systems, [&](TableReader& row) {
        InitialCondition condition;
        row.read(tables::initial_condition, condition);
        if (load.sound()) {
            model.systems[row.place(0)].initial_conditions.push_back(condition);
        }
    });
    load_segment_series(load, model, tables::boundary, systems, &System::boundaries);
    load_segment_series(load, model, tables::load, systems, &System::loads);
}

void load_flows(LoadState& load, Model& model)
{
    ParentKeys fields;
    ParentKeys functions;
    const auto functions_of = [&](auto& row) -> auto&
    {
        return model.flow_fields[row.place(0)].functions;
    };
    load_items(
        load, tables::flow_field, nullptr, &fields, [&](auto&) -> auto& { return model.flow_fields; });
    load_items(load, tables::flow_function, &fields, &functions, functions_of);
    load_items(
        load, tables::flow_path, &functions,
        nullptr, [&](auto& row) -> auto& { return functions_of(row)[row.place(1)].paths; });
    load_series(load, "flow_value", functions,
                [&](auto& pair) -> TimeSeries& { return functions_of(pair)[pair.place(1)].series; });
}

void load_exchanges(LoadState& load, Model& model)
{
    ParentKeys fields;
    ParentKeys functions;
    const auto functions_of = [&](auto& row) -> auto&
    {
        return model.exchange_fields[row.place(0)].functions;
    };
    load_items(
        load, tables::exchange_field, nullptr, &fields, [&](auto&) -> auto& { return model.exchange_fields; });
    load_items(load, tables::exchange_function, &fields, &functions, functions_of);
    load_items(
        load, tables::exchange_pair, &functions,
        nullptr, [&](auto& row) -> auto& { return functions_of(row)[row.place(1)].pairs; });
    load_series(load, "exchange_value", functions,
                [&](auto& pair) -> TimeSeries& { return functions_of(pair)[pair.place(1)].series; });
}

/// Types and their instances, whose keys it notes.
template <class TypeTable, class Table, class Types>
void load_types(LoadState& load, const TypeTable& type_table, const Table& table, Types& types, ParentKeys& instances)
{
    ParentKeys keys;
    std::map<std::int32_t, std::string> taken;
    TableReader row(load, type_table.name, nullptr, &keys);
    while (row.next()) {
        typename Types::value_type type;
        row.read(type_table, type);
        const auto [holder, is_new] = taken.try_emplace(type.isc, row_in_words(row.address("isc")));
        if (!is_new) {
            row.report("isc", std::to_string(type.isc), "is also the ISC number of " + holder->second,
                       "give each type its own");
        }
        if (load.sound()) {
            types.push_back(std::move(type));
        }
    }
    load_items(
        load, table, &keys, &instances, [&](auto& r) -> auto& { return types[r.place(0)].instances; });
}

void load_instances(LoadState& load, Model& model)
{
    ParentKeys functions;
    load_types(load, tables::time_function_type, tables::time_function, model.time_function_types, functions);
    load_series(load, "time_function_value", functions, [&](const TableReader& pair) -> TimeSeries& {
        return model.time_function_types[pair.place(0)].instances[pair.place(1)].series;
    });
    ParentKeys parameters;
    load_types(load, tables::parameter_type, tables::parameter, model.parameter_types, parameters);
    load_for_each_segment(load, "parameter_value", parameters, [&](TableReader& row) {
        const float value = row.real("value");
        if (load.sound()) {
            std::vector<float>& values = model.parameter_types[row.place(0)].instances[row.place(1)].values;
            if (values.empty()) {
                values.reserve(load.segments.all().size());
            }
            values.push_back(value);
        }
    });
    ParentKeys constants;
    load_types(load, tables::constant_type, tables::constant, model.constant_types, constants);
}

} // namespace

void load_tables(LoadState& load, Model& model)
{
    load_run(load, model);
    load_segments(load, model);
    load_systems(load, model);
    load_flows(load, model);
    load_exchanges(load, model);
    load_instances(load, model);
}

} // namespace velm
