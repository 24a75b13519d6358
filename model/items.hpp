#pragma once

#include "model/address.hpp"
#include "model/tables.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>
#include <type_traits>

namespace velm {

/// The tables of tables.hpp, for those who meet them at run time; for_each_table() has them in this order.
enum class TableId : std::uint8_t {
    model,
    system,
    segment,
    initial_condition,
    flow_field,
    flow_function,
    flow_path,
    exchange_field,
    exchange_function,
    exchange_pair,
    boundary,
    load,
    time_function_type,
    time_function,
    parameter_type,
    parameter,
    constant_type,
    constant,
};

/// Calls use(TableId, table) for each table.
template <class Use>
constexpr void for_each_table(Use use)
{
    std::uint8_t id = 0;
    const auto use_in_order = [&](const auto&... table) { (use(static_cast<TableId>(id++), table), ...); };
    using namespace tables;
    use_in_order(model, system, segment, initial_condition, flow_field, flow_function, flow_path, exchange_field,
                 exchange_function, exchange_pair, boundary, load, time_function_type, time_function, parameter_type,
                 parameter, constant_type, constant);
}

/// Goes to the list that holds the items of a table, which is not the model's own, and calls use(table, list, level).
///
/// `step(list, level)` gives the item to go on with: the outermost list has level 0, as has the first number of an
/// address. `step.type(list)` does so for the type that an instance belongs to, at level 0.
template <class AnyModel, class Step, class Use>
void with_list(TableId id, AnyModel& m, Step&& step, Use&& use)
{
    switch (id) {
    case TableId::model: return;
    case TableId::system: return use(tables::system, m.systems, 0);
    case TableId::segment: return use(tables::segment, m.segments, 0);
    case TableId::initial_condition: return use(tables::initial_condition, step(m.systems, 0).initial_conditions, 1);
    case TableId::flow_field: return use(tables::flow_field, m.flow_fields, 0);
    case TableId::flow_function: return use(tables::flow_function, step(m.flow_fields, 0).functions, 1);
    case TableId::flow_path: return use(tables::flow_path, step(step(m.flow_fields, 0).functions, 1).paths, 2);
    case TableId::exchange_field: return use(tables::exchange_field, m.exchange_fields, 0);
    case TableId::exchange_function: return use(tables::exchange_function, step(m.exchange_fields, 0).functions, 1);
    case TableId::exchange_pair:
        return use(tables::exchange_pair, step(step(m.exchange_fields, 0).functions, 1).pairs, 2);
    case TableId::boundary: return use(tables::boundary, step(m.systems, 0).boundaries.items, 1);
    case TableId::load: return use(tables::load, step(m.systems, 0).loads.items, 1);
    case TableId::time_function_type: return use(tables::time_function_type, m.time_function_types, 0);
    case TableId::time_function: return use(tables::time_function, step.type(m.time_function_types).instances, 1);
    case TableId::parameter_type: return use(tables::parameter_type, m.parameter_types, 0);
    case TableId::parameter: return use(tables::parameter, step.type(m.parameter_types).instances, 1);
    case TableId::constant_type: return use(tables::constant_type, m.constant_types, 0);
    case TableId::constant: return use(tables::constant, step.type(m.constant_types).instances, 1);
    }
}

/// Goes on to one item of that list, or to the model, and calls use(table, item).
template <class AnyModel, class Step, class Use>
void with_item(TableId id, AnyModel& model, Step&& step, Use&& use)
{
    if (id == TableId::model) {
        return use(tables::model, model);
    }
    with_list(id, model, step,
              [&](const auto& table, auto& list, std::size_t level) { use(table, step(list, level)); });
}

/// A table of time series, with that of the items that they belong to.
struct SeriesTable {
    std::string_view name;
    TableId owner;
    std::string_view owner_name;
    std::string_view count_key; ///< with which the host is asked how many pairs there are
    std::string_view pairs_key; ///< with which it is asked for one, or for all of them
    std::size_t most_pairs = std::numeric_limits<std::int32_t>::max();
};
inline constexpr std::array series_tables{
    SeriesTable{"boundary_value", TableId::boundary, "boundary", "GNBFP", "GALLBOUNDFUNC", SegmentSeries::most_pairs},
    SeriesTable{"load_value", TableId::load, "load", "GNBWK", "GALLLOADFUNC", SegmentSeries::most_pairs},
    SeriesTable{"flow_value", TableId::flow_function, "flow_function", "GNBRKQ", "GNOQFUNC"},
    SeriesTable{"exchange_value", TableId::exchange_function, "exchange_function", "GNOBRKS", "GNORFUNC"},
    SeriesTable{"time_function_value", TableId::time_function, "time_function", "GNBRKTF", "GBRKTF"},
};

/// The table of the series that the items of a table own. They must own some.
constexpr const SeriesTable& series_of(std::string_view owner)
{
    return *std::find_if(series_tables.begin(), series_tables.end(),
                         [owner](const SeriesTable& table) { return table.owner_name == owner; });
}

/// Calls visit(item, its number) for each item of a list.
template <class List, class Visit>
void for_each_numbered(List& list, Visit visit)
{
    for (std::int64_t number = 1; auto& item : list) {
        visit(item, number++);
    }
}

/// Calls visit(table, numbers, item) for each item of a model, an owner before what it owns.
template <class AnyModel, class Visit>
void for_each_item(AnyModel& model, Visit&& visit)
{
    const auto types = [&](const auto& type_table, const auto& table, auto& list) {
        for_each_numbered(list, [&](auto& type, std::int64_t t) {
            visit(type_table, RowNumbers{t}, type);
            for_each_numbered(type.instances, [&](auto& item, std::int64_t i) {
                visit(table, RowNumbers{t, i}, item);
            });
        });
    };
    const auto fields = [&](const auto& field_table, const auto& table, const auto& part_table, auto& list,
                            auto parts) {
        for_each_numbered(list, [&](auto& field, std::int64_t f) {
            visit(field_table, RowNumbers{f}, field);
            for_each_numbered(field.functions, [&](auto& function, std::int64_t n) {
                visit(table, RowNumbers{f, n}, function);
                for_each_numbered(function.*parts, [&](auto& part, std::int64_t p) {
                    visit(part_table, RowNumbers{f, n, p}, part);
                });
            });
        });
    };
    visit(tables::model, RowNumbers{1}, model);
    for_each_numbered(model.segments, [&](auto& item, std::int64_t s) { visit(tables::segment, RowNumbers{s}, item); });
    for_each_numbered(model.systems, [&](auto& system, std::int64_t s) {
        const auto own = [&](const auto& table, auto& list) {
            for_each_numbered(list, [&](auto& item, std::int64_t i) { visit(table, RowNumbers{s, i}, item); });
        };
        visit(tables::system, RowNumbers{s}, system);
        own(tables::initial_condition, system.initial_conditions);
        own(tables::boundary, system.boundaries.items);
        own(tables::load, system.loads.items);
    });
    fields(tables::flow_field, tables::flow_function, tables::flow_path, model.flow_fields, &FlowFunction::paths);
    fields(tables::exchange_field, tables::exchange_function, tables::exchange_pair, model.exchange_fields,
           &ExchangeFunction::pairs);
    types(tables::time_function_type, tables::time_function, model.time_function_types);
    types(tables::parameter_type, tables::parameter, model.parameter_types);
    types(tables::constant_type, tables::constant, model.constant_types);
}

/// Calls visit(item, numbers) for each item of one kind.
template <class Item, class Visit>
void for_each_of(const Model& model, Visit&& visit)
{
    for_each_item(model, [&](const auto& /*table*/, const RowNumbers& numbers, const auto& item) {
        if constexpr (std::is_same_v<decltype(item), const Item&>) {
            visit(item, numbers);
        }
    });
}

} // namespace velm
