#include "tests/headless_host/sample_model.hpp"

namespace velm {

namespace {

Segment second_segment()
{
    Segment segment;
    segment.name = "Mouth";
    segment.bottom_segment = 7;
    segment.type = 4;
    segment.flow_option = 2;
    segment.volume = 1000.5F;
    segment.velocity_multiplier = 11;
    segment.velocity_exponent = 12;
    segment.depth_multiplier = 13;
    segment.depth_exponent = 14;
    segment.slope = 15;
    segment.length = 16;
    segment.width = 17;
    segment.roughness = 18;
    segment.minimum_depth = 19;
    segment.initial_surface_elevation = 20;
    segment.bottom_elevation = 21;
    segment.side_slope = 22;
    segment.initial_depth = 23;
    segment.weir_height = 24;
    segment.weir_type = 25;
    return segment;
}

System ammonia()
{
    System system;
    system.name = "Ammonia";
    system.tag = "NH3";
    system.boundaries = {1.5F, 2.5F, {{4, {{0, 10}, {0.5F, 0.25F}}}, {9, {}}}};
    system.loads = {3.5F, 4.5F, {{2, {{5, 6, 7}, {8, 9, 10}}}}};
    system.solids_transport_field = 3;
    system.solids_density = 2.65F;
    system.maximum_concentration = 1000;
    system.initial_conditions = {{1.25F, 0.5F}, {2.25F, 0.75F}};
    return system;
}

void add_flows(Model& model)
{
    model.flow_fields.resize(2);
    model.flow_fields[1].scale_factor = 1.25F;
    model.flow_fields[1].conversion_factor = 0.0283F;
    model.flow_fields[1].functions = {{"River", {}, {}},
                                      {"Brook", {{0, 1, 0.5F}, {1, 2, 0.375F}}, {{0, 1, 2}, {30, 31, 32}}}};
}

void add_exchanges(Model& model)
{
    model.exchange_fields.resize(1);
    model.exchange_fields[0].scale_factor = 1.125F;
    model.exchange_fields[0].conversion_factor = 1.375F;
    model.exchange_fields[0].functions = {{"Mixing", {{0, 2, 500, 50}, {1, 2, 600, 60}}, {{3, 4}, {40, 41}}}};
}

void add_types(Model& model)
{
    model.time_function_types = {{70, {}}, {-3, {{false, "Wind", {}}, {true, "Light", {{1, 2}, {150, 151}}}}}};
    model.parameter_types = {{21, {{true, "Shading", 0.5F, {0.125F, 0.25F}}}}, {22, {}}};
    model.constant_types = {{11, {{false, "Unused", 1}, {true, "Decay", 0.0625F}}}};
}

} // namespace

Model sample_model()
{
    Model model;
    model.model_type = 2;
    model.start_date = {2024, 3, 1};
    model.start_time = {7, 30, 15};
    model.skip_date = {2025, 4, 2};
    model.skip_time = {8, 31, 16};
    model.julian_end_time = 365.5F;
    model.mass_balance_table_output = 31;
    model.solution_technique = 32;
    model.negative_solution = 33;
    model.restart = 34;
    model.time_optimization = 35;
    model.water_quality_linkage = 36;
    model.topt_factor = 0.9F;
    model.maximum_time_step = 0.5F;
    model.minimum_time_step = 0.001F;
    model.print_interval = 0.25F;
    model.bed_volume_option = 37;
    model.bed_compaction_time_step = 38;
    model.volume_scale_factor = 39;
    model.volume_conversion_factor = 40;
    model.hydrodynamic_file = "flows.hyd";
    model.nps_option = 1;
    model.nps_file = "runoff.nps";
    model.systems = {ammonia(), System{}};
    model.segments = {Segment{}, second_segment()};
    model.segments[0].flow_option = 3;
    add_flows(model);
    add_exchanges(model);
    add_types(model);
    return model;
}

} // namespace velm
