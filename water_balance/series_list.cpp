#include "water_balance/series_list.hpp"

#include "model/items.hpp"

namespace velm {

namespace {

double factor_of(const auto& owner)
{
    return double{owner.scale_factor} * double{owner.conversion_factor};
}

/// Adds the series of an owner's items, which are as `series` says but for what differs from item to item.
void add_series(std::vector<SeriesItem>& list, SeriesItem series, std::int64_t owner, const auto& items)
{
    series.owner = static_cast<std::int32_t>(owner);
    for_each_numbered(items, [&](const auto& item, std::int64_t number) {
        series.number = static_cast<std::int32_t>(number);
        series.series = &item.series;
        if constexpr (requires { item.segment; }) {
            series.segment = item.segment;
        } else {
            series.description = item.description;
        }
        if constexpr (requires { item.used; }) {
            series.used = item.used;
        }
        list.push_back(series);
    });
}

} // namespace

std::vector<SeriesItem> all_series(const Model& model)
{
    std::vector<SeriesItem> list;
    for_each_numbered(model.flow_fields, [&](const FlowField& field, std::int64_t number) {
        add_series(list, {.table = "flow_value", .unit = "m3/s", .factor = factor_of(field)}, number, field.functions);
    });
    for_each_numbered(model.exchange_fields, [&](const ExchangeField& field, std::int64_t number) {
        add_series(list, {.table = "exchange_value", .unit = "m2/s", .factor = factor_of(field)}, number,
                   field.functions);
    });
    for_each_numbered(model.systems, [&](const System& system, std::int64_t number) {
        const SegmentSeriesSet& set = system.boundaries;
        add_series(list, {.table = "boundary_value", .unit = "mg/L", .factor = factor_of(set)}, number, set.items);
    });
    for_each_numbered(model.systems, [&](const System& system, std::int64_t number) {
        const SegmentSeriesSet& set = system.loads;
        add_series(list, {.table = "load_value", .unit = "kg/day", .factor = factor_of(set)}, number, set.items);
    });
    for_each_numbered(model.time_function_types, [&](const auto& type, std::int64_t number) {
        add_series(list, {.table = "time_function_value"}, number, type.instances);
    });
    return list;
}

} // namespace velm
