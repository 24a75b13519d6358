#include "water_balance/series_list.hpp"

namespace velm {

namespace {

template <class Fields>
void add_fields(std::vector<SeriesItem>& list, const Fields& fields, std::string_view table, std::string_view unit)
{
    std::int32_t owner = 0;
    for (const auto& field : fields) {
        ++owner;
        std::int32_t number = 0;
        for (const auto& function : field.functions) {
            list.push_back({.table = table,
                            .owner = owner,
                            .number = ++number,
                            .series = &function.series,
                            .unit = unit,
                            .factor = double{field.scale_factor} * double{field.conversion_factor},
                            .description = function.description});
        }
    }
}

void add_items(std::vector<SeriesItem>& list, const SegmentSeriesSet& set, std::string_view table,
               std::string_view unit, std::int32_t system)
{
    std::int32_t number = 0;
    for (const SegmentSeries& item : set.items) {
        list.push_back({.table = table,
                        .owner = system,
                        .number = ++number,
                        .series = &item.series,
                        .unit = unit,
                        .factor = double{set.scale_factor} * double{set.conversion_factor},
                        .segment = item.segment,
                        .description = {}});
    }
}

} // namespace

std::vector<SeriesItem> all_series(const Model& model)
{
    std::vector<SeriesItem> list;
    add_fields(list, model.flow_fields, "flow_value", "m3/s");
    add_fields(list, model.exchange_fields, "exchange_value", "m2/s");
    std::int32_t owner = 0;
    for (const System& system : model.systems) {
        add_items(list, system.boundaries, "boundary_value", "mg/L", ++owner);
    }
    owner = 0;
    for (const System& system : model.systems) {
        add_items(list, system.loads, "load_value", "kg/day", ++owner);
    }
    owner = 0;
    for (const InstanceType<TimeFunction>& type : model.time_function_types) {
        ++owner;
        std::int32_t number = 0;
        for (const TimeFunction& function : type.instances) {
            list.push_back({.table = "time_function_value",
                            .owner = owner,
                            .number = ++number,
                            .series = &function.series,
                            .unit = {},
                            .description = function.description,
                            .used = function.used});
        }
    }
    return list;
}

} // namespace velm
