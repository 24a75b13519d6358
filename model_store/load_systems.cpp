#include "model_store/load_parts.hpp"

#include <string>
#include <utility>

namespace velm {

namespace {

System read_system(TableReader& row)
{
    constexpr std::size_t longest_name = 30;
    constexpr std::size_t longest_tag = 5;
    System system;
    system.name = row.text("name", longest_name);
    system.tag = row.text("tag", longest_tag);
    system.boundaries.scale_factor = row.real("boundary_scale_factor");
    system.boundaries.conversion_factor = row.real("boundary_conversion_factor");
    system.loads.scale_factor = row.real("load_scale_factor");
    system.loads.conversion_factor = row.real("load_conversion_factor");
    system.solids_transport_field = row.integer("solids_transport_field");
    system.solids_density = row.real("solids_density");
    system.maximum_concentration = row.real("maximum_concentration");
    return system;
}

void load_initial_conditions(LoadState& load, Model& model, const ParentKeys& systems)
{
    load_for_each_segment(load, "initial_condition", systems, [&](TableReader& row) {
        InitialCondition condition;
        condition.concentration = row.real("concentration");
        condition.dissolved_fraction = row.real("dissolved_fraction");
        if (load.sound()) {
            model.systems[row.place(0)].initial_conditions.push_back(condition);
        }
    });
}

/// The boundaries or the loads: tables of one form, which differ in their name.
void load_segment_series(LoadState& load, Model& model, const ParentKeys& systems, const std::string& table,
                         SegmentSeriesSet System::*set)
{
    ParentKeys items;
    TableReader row(load, table, &systems, &items);
    while (row.next()) {
        const std::int32_t segment = row.segment("segment");
        if (load.sound()) {
            (model.systems[row.place(0)].*set).items.push_back({segment, {}});
        }
    }
    const auto find = [&](const TableReader& pair) -> TimeSeries& {
        return (model.systems[pair.place(0)].*set).items[pair.place(1)].series;
    };
    load_series(load, table + "_value", items, find, SegmentSeries::most_pairs);
}

} // namespace

void load_systems(LoadState& load, Model& model)
{
    ParentKeys systems;
    TableReader row(load, "system", nullptr, &systems);
    while (row.next()) {
        System system = read_system(row);
        if (load.sound()) {
            model.systems.push_back(std::move(system));
        }
    }
    load_initial_conditions(load, model, systems);
    load_segment_series(load, model, systems, "boundary", &System::boundaries);
    load_segment_series(load, model, systems, "load", &System::loads);
}

} // namespace velm
