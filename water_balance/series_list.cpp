#include "water_balance/series_list.hpp"

#include "model/items.hpp"

namespace velm {

namespace {

template <class Fields>
void add_fields(std::vector<SeriesItem>& list, const Fields& fields, std::string_view table, std::string_view unit)
{
    for_each_numbered(fields, [&](const auto& field, std::int64_t owner) {
        for_each_numbered(field.functions, [&](const auto& function, std::int64_t number) {
            list.push_back({.table = table,
                            .owner = static_cast<std::int32_t>(owner),
                            .number = static_cast<std::int32_t>(number),
                            .series = &function.series,
                            .unit = unit,
                            .factor = double{field.scale_factor} * double{field.conversion_factor},
                            .description = function.description});
        });
    });
}

void add_items(std::vector<SeriesItem>& list, const Model& model, SegmentSeriesSet System::*set, std::string_view table,
               std::string_view unit)
{
    for_each_numbered(model.systems, [&](const System& system, std::int64_t owner) {
        for_each_numbered((system.*set).items, [&](const SegmentSeries& item, std::int64_t number) {
            list.push_back({.table = table,
                            .owner = static_cast<std::int32_t>(owner),
                            .number = static_cast<std::int32_t>(number),
                            .series = &item.series,
                            .unit = unit,
                            .factor = double{(system.*set).scale_factor} * double{(system.*set).conversion_factor},
                            .segment = item.segment,
                            .description = {}});
        });
    });
}

} // namespace

std::vector<SeriesItem> all_series(const Model& model)
{
    std::vector<SeriesItem> list;
    add_fields(list, model.flow_fields, "flow_value", "m3/s");
    add_fields(list, model.exchange_fields, "exchange_value", "m2/s");
    add_items(list, model, &System::boundaries, "boundary_value", "mg/L");
    add_items(list, model, &System::loads, "load_value", "kg/day");
    for_each_numbered(model.time_function_types, [&](const auto& type, std::int64_t owner) {
        for_each_numbered(type.instances, [&](const TimeFunction& function, std::int64_t number) {
            list.push_back({.table = "time_function_value",
                            .owner = static_cast<std::int32_t>(owner),
                            .number = static_cast<std::int32_t>(number),
                            .series = &function.series,
                            .unit = {},
                            .description = function.description,
                            .used = function.used});
        });
    });
    return list;
}

} // namespace velm
