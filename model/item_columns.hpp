#pragma once

#include "model/model.hpp"

#include <concepts>

namespace velm {

// The data of each kind of item by the names of their columns in a model database, in the schema's order but for keys.
//
// visit_columns(visit, item...) calls visit(column, value...) for each of them, with the values of all the items given:
// one to look a value up, two to compare. What an item owns in lists is not visited.

template <class Visit, std::same_as<Model>... Items>
void visit_columns(Visit&& visit, const Items&... model)
{
    visit("model_type", model.model_type...);
    visit("start_date_1", model.start_date[0]...);
    visit("start_date_2", model.start_date[1]...);
    visit("start_date_3", model.start_date[2]...);
    visit("start_time_1", model.start_time[0]...);
    visit("start_time_2", model.start_time[1]...);
    visit("start_time_3", model.start_time[2]...);
    visit("skip_date_1", model.skip_date[0]...);
    visit("skip_date_2", model.skip_date[1]...);
    visit("skip_date_3", model.skip_date[2]...);
    visit("skip_time_1", model.skip_time[0]...);
    visit("skip_time_2", model.skip_time[1]...);
    visit("skip_time_3", model.skip_time[2]...);
    visit("julian_end_time", model.julian_end_time...);
    visit("mass_balance_table_output", model.mass_balance_table_output...);
    visit("solution_technique", model.solution_technique...);
    visit("negative_solution", model.negative_solution...);
    visit("restart", model.restart...);
    visit("time_optimization", model.time_optimization...);
    visit("water_quality_linkage", model.water_quality_linkage...);
    visit("topt_factor", model.topt_factor...);
    visit("maximum_time_step", model.maximum_time_step...);
    visit("minimum_time_step", model.minimum_time_step...);
    visit("print_interval", model.print_interval...);
    visit("bed_volume_option", model.bed_volume_option...);
    visit("bed_compaction_time_step", model.bed_compaction_time_step...);
    visit("volume_scale_factor", model.volume_scale_factor...);
    visit("volume_conversion_factor", model.volume_conversion_factor...);
    visit("hydrodynamic_file", model.hydrodynamic_file...);
    visit("nps_option", model.nps_option...);
    visit("nps_file", model.nps_file...);
}

template <class Visit, std::same_as<System>... Items>
void visit_columns(Visit&& visit, const Items&... system)
{
    visit("name", system.name...);
    visit("tag", system.tag...);
    visit("boundary_scale_factor", system.boundaries.scale_factor...);
    visit("boundary_conversion_factor", system.boundaries.conversion_factor...);
    visit("load_scale_factor", system.loads.scale_factor...);
    visit("load_conversion_factor", system.loads.conversion_factor...);
    visit("solids_transport_field", system.solids_transport_field...);
    visit("solids_density", system.solids_density...);
    visit("maximum_concentration", system.maximum_concentration...);
}

template <class Visit, std::same_as<Segment>... Items>
void visit_columns(Visit&& visit, const Items&... segment)
{
    visit("name", segment.name...);
    visit("bottom_segment", segment.bottom_segment...);
    visit("type", segment.type...);
    visit("flow_option", segment.flow_option...);
    visit("volume", segment.volume...);
    visit("velocity_multiplier", segment.velocity_multiplier...);
    visit("velocity_exponent", segment.velocity_exponent...);
    visit("depth_multiplier", segment.depth_multiplier...);
    visit("depth_exponent", segment.depth_exponent...);
    visit("slope", segment.slope...);
    visit("length", segment.length...);
    visit("width", segment.width...);
    visit("roughness", segment.roughness...);
    visit("minimum_depth", segment.minimum_depth...);
    visit("initial_surface_elevation", segment.initial_surface_elevation...);
    visit("bottom_elevation", segment.bottom_elevation...);
    visit("side_slope", segment.side_slope...);
    visit("initial_depth", segment.initial_depth...);
    visit("weir_height", segment.weir_height...);
    visit("weir_type", segment.weir_type...);
}

template <class Visit, std::same_as<InitialCondition>... Items>
void visit_columns(Visit&& visit, const Items&... condition)
{
    visit("concentration", condition.concentration...);
    visit("dissolved_fraction", condition.dissolved_fraction...);
}

/// Boundaries and loads.
template <class Visit, std::same_as<SegmentSeries>... Items>
void visit_columns(Visit&& visit, const Items&... item)
{
    visit("segment", item.segment...);
}

template <class Visit, std::same_as<FlowField>... Items>
void visit_columns(Visit&& visit, const Items&... field)
{
    visit("scale_factor", field.scale_factor...);
    visit("conversion_factor", field.conversion_factor...);
}

template <class Visit, std::same_as<FlowFunction>... Items>
void visit_columns(Visit&& visit, const Items&... function)
{
    visit("description", function.description...);
}

template <class Visit, std::same_as<FlowPath>... Items>
void visit_columns(Visit&& visit, const Items&... path)
{
    visit("first_segment", path.first_segment...);
    visit("second_segment", path.second_segment...);
    visit("fraction", path.fraction...);
}

template <class Visit, std::same_as<ExchangeField>... Items>
void visit_columns(Visit&& visit, const Items&... field)
{
    visit("scale_factor", field.scale_factor...);
    visit("conversion_factor", field.conversion_factor...);
}

template <class Visit, std::same_as<ExchangeFunction>... Items>
void visit_columns(Visit&& visit, const Items&... function)
{
    visit("description", function.description...);
}

template <class Visit, std::same_as<ExchangePair>... Items>
void visit_columns(Visit&& visit, const Items&... pair)
{
    visit("first_segment", pair.first_segment...);
    visit("second_segment", pair.second_segment...);
    visit("area", pair.area...);
    visit("length", pair.length...);
}

template <class Visit, std::same_as<TimeFunction>... Items>
void visit_columns(Visit&& visit, const Items&... function)
{
    visit("used", function.used...);
    visit("description", function.description...);
}

template <class Visit, std::same_as<Parameter>... Items>
void visit_columns(Visit&& visit, const Items&... parameter)
{
    visit("used", parameter.used...);
    visit("description", parameter.description...);
    visit("scale_factor", parameter.scale_factor...);
}

template <class Visit, std::same_as<Constant>... Items>
void visit_columns(Visit&& visit, const Items&... constant)
{
    visit("used", constant.used...);
    visit("description", constant.description...);
    visit("value", constant.value...);
}

} // namespace velm
