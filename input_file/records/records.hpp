#pragma once

#include "input_file/input_file.hpp"
#include "input_file/records/record.hpp"

#include <array>

/// Every kind of line that a model input file has, in file order: the columns as a reader of the file sees them.
namespace velm::records {

/// Most records hold one number in their first columns and a label from column 21.
constexpr Record integer_record(std::string_view table, std::string_view name, std::string_view text)
{
    return {text, {integer(table, name, 1, 5), label(21, text)}};
}
constexpr Record count_record(std::string_view text)
{
    return integer_record({}, text, text);
}
constexpr Record factors(std::string_view table, std::string_view scale, std::string_view conversion,
                         std::string_view text)
{
    return {text, {real(table, scale, 1, 14, 6), real(table, conversion, 15, 14, 6), label(31, text)}};
}
constexpr Record banner(std::string_view text)
{
    return {"banner", {label(2, text)}};
}
constexpr Record time_pair(std::string_view table)
{
    return {"time pair", {real(table, "time"), real(table, "value")}};
}
constexpr Record time_pair_in_columns(std::string_view table)
{
    return {"time pair", {real(table, "time", 1, 10, 4), real(table, "value", 16, 10, 4)}};
}
constexpr std::size_t name_width = 30;

inline constexpr std::array<Record, 11> banners{
    banner("======================== Model Parameterization ==================================="),
    banner("======================== Segment Information ==================================="),
    banner("======================== Flow Path Information ==================================="),
    banner("======================== Flow Time Series ==================================="),
    banner("======================== Segment Dispersion/Exhange ==================================="),
    banner("======================== Boundary Information ==================================="),
    banner("======================== Load Information ==================================="),
    banner("======================== Time Functions ==================================="),
    banner("======================== Segment Parameters ==================================="),
    banner("======================== Constants ==================================="),
    banner("======================== Initial Conditions ==================================="),
};

// system information
inline constexpr Record module_type{
    "Module Type, Version",
    {integer("model", "model_type", 1, 5), integer({}, "version", 11, 2), label(23, "Module Type, Version")}};
inline constexpr Record start_date_and_time{
    "Start date and time",
    {integer("model", "start_date_1", 1, 5), integer("model", "start_date_2", 6, 5),
     integer("model", "start_date_3", 11, 5), integer("model", "start_time_1", 16, 5),
     integer("model", "start_time_2", 21, 5), integer("model", "start_time_3", 26, 5),
     label(36, "Start date and time")}};
inline constexpr Record skip_date_and_time{
    "Skip date and time",
    {integer("model", "skip_date_1", 1, 5), integer("model", "skip_date_2", 6, 5),
     integer("model", "skip_date_3", 11, 5), integer("model", "skip_time_1", 16, 5),
     integer("model", "skip_time_2", 21, 5), integer("model", "skip_time_3", 26, 5), label(36, "Skip date and time")}};
inline constexpr Record julian_end_time{"Julian end time",
                                        {real("model", "julian_end_time", 1, 10, 1), label(21, "Julian end time")}};
inline constexpr Record number_of_systems = count_record("Number of Systems");
inline constexpr Record mass_balance_table_output =
    integer_record("model", "mass_balance_table_output", "Mass Balance Table Output");
inline constexpr Record solution_technique = integer_record("model", "solution_technique", "Solution Technique Option");
inline constexpr Record negative_solution = integer_record("model", "negative_solution", "Negative Solution Option");
inline constexpr Record restart = integer_record("model", "restart", "Restart Option");
inline constexpr Record time_optimization = integer_record("model", "time_optimization", "Time Optimization Option");
inline constexpr Record water_quality_linkage =
    integer_record("model", "water_quality_linkage", "WQ Module Linkage Option");
inline constexpr Record topt_factor{"TOPT Factor", {real("model", "topt_factor", 1, 10, 4), label(21, "TOPT Factor")}};
inline constexpr Record time_steps{"Min and Max Timestep",
                                   {real("model", "minimum_time_step", 1, 8, 6),
                                    real("model", "maximum_time_step", 10, 6, 3), label(21, "Min and Max Timestep")}};
inline constexpr Record print_interval{
    "Time and Print Interval", {real("model", "print_interval", 1, 10, 4), label(16, "Time and Print Interval")}};
inline constexpr Record system{"system", {text("system", "tag", 1, 5), text("system", "name", 11, name_width)}};

// segments
inline constexpr Record number_of_segments = count_record("Number of Segments");
inline constexpr Record bed_volume_option = integer_record("model", "bed_volume_option", "Bed Volume Option");
inline constexpr Record bed_compaction_time_step{
    "Bed Compaction Time Step",
    {real("model", "bed_compaction_time_step", 1, 10, 3), label(21, "Bed Compaction Time Step")}};
inline constexpr Record volume_factors =
    factors("model", "volume_scale_factor", "volume_conversion_factor", "Volume Scale & Conversion Factor");
inline constexpr Record segment_name_caption{"caption of the segment names", {label(1, "  Segment   SegName")}};
inline constexpr Record segment_name{"segment name",
                                     {integer({}, "segment number", 1, 5), text("segment", "name", 11, 40)}};
inline constexpr Record segment_caption{
    "caption of the segments",
    {label(1, " Seg BotSeg iType IQOPT     Volume          VMult          Vexp          DMult           Dexp"
              "         Length          Slope         Width           Rough         Depth_Q0       SurfElev"
              "      SegBotElev    SegSideSlope   SegInitDepth    WeirHeight       WeirType")}};
inline constexpr Record segment{"segment",
                                {integer({}, "segment number", 1, 5),
                                 integer("segment", "bottom_segment", 6, 5),
                                 integer("segment", "type", 11, 5),
                                 integer("segment", "flow_option", 16, 5),
                                 real("segment", "volume", 21, 15, 5),
                                 real("segment", "velocity_multiplier", 36, 15, 5),
                                 real("segment", "velocity_exponent", 51, 15, 5),
                                 real("segment", "depth_multiplier", 66, 15, 5),
                                 real("segment", "depth_exponent", 81, 15, 5),
                                 real("segment", "length", 96, 15, 5),
                                 real("segment", "slope", 111, 15, 5),
                                 real("segment", "width", 126, 15, 5),
                                 real("segment", "roughness", 141, 15, 5),
                                 real("segment", "minimum_depth", 156, 15, 5),
                                 real("segment", "initial_surface_elevation", 171, 15, 5),
                                 real("segment", "bottom_elevation", 186, 15, 5),
                                 real("segment", "side_slope", 201, 15, 5),
                                 real("segment", "initial_depth", 216, 15, 5),
                                 real("segment", "weir_height", 231, 15, 5),
                                 real("segment", "weir_type", 246, 15, 5)}};

// flow paths; each field begins with the line "    Flow Field " and its number
inline constexpr Record flow_pathways{"Flow Pathways", {label(16, "Flow Pathways")}};
inline constexpr Record number_of_flow_path_fields = count_record("Number of flow fields");
inline constexpr Record hydrodynamic_file{"hydrodynamic file", {text("model", "hydrodynamic_file", 2, 512)}};
inline constexpr Record number_of_flow_functions = count_record("Number of Flow Functions for Flow Field");
inline constexpr Record flow_function{"flow function", {text("flow_function", "description", 2, 80)}};
inline constexpr Record number_of_flow_paths{"number of flow paths", {integer({}, "number of flow paths")}};
inline constexpr Record flow_path{"flow path",
                                  {integer("flow_path", "first_segment", 1, 4),
                                   integer("flow_path", "second_segment", 7, 4),
                                   real("flow_path", "fraction", 11, 15, 2)}};

// flow time series; each field begins with its name
inline constexpr Record number_of_flow_fields = count_record("Number of Flow Fields");
inline constexpr Record field_name{"name of the field", {text({}, "name of the field", 2, 40)}};
inline constexpr Record number_of_inflows = count_record("Number of inflows");
inline constexpr Record flow_factors =
    factors("flow_field", "scale_factor", "conversion_factor", "Flow Scale & Conversion Factors");
inline constexpr Record inflow{"inflow", {text({}, "description", 1, 30)}};
inline constexpr Record number_of_time_pairs = count_record("Number of Time Pairs");
inline constexpr Record flow_value = time_pair("flow_value");

// dispersive exchanges
inline constexpr Record number_of_exchange_fields = count_record("Number of Exchange Fields");
inline constexpr Record number_of_exchange_functions = count_record("Number of Exchange Functions");
inline constexpr Record exchange_factors =
    factors("exchange_field", "scale_factor", "conversion_factor", "Dispersion Scale & Conversion Factors");
inline constexpr Record exchange_function{"exchange function", {text("exchange_function", "description", 2, 80)}};
inline constexpr Record number_of_exchange_pairs = count_record("Number of segment exchange pairs");
inline constexpr Record exchange_pair{"exchange pair",
                                      {integer("exchange_pair", "first_segment"),
                                       integer("exchange_pair", "second_segment"), real("exchange_pair", "area"),
                                       real("exchange_pair", "length")}};
inline constexpr Record exchange_value = time_pair("exchange_value");

// boundaries and loads
inline constexpr Record system_name{"system name", {text({}, "system name", 2, name_width)}};
inline constexpr Record number_of_boundaries = count_record("Number of boundaries");
inline constexpr Record boundary_factors =
    factors("system", "boundary_scale_factor", "boundary_conversion_factor", "Boundary Scale & Conversion Factors");
inline constexpr Record boundary_segment = integer_record("boundary", "segment", "Boundary Segment Number");
inline constexpr Record boundary_value = time_pair("boundary_value");
inline constexpr Record nps_option{
    "NPS Input Option",
    {integer("model", "nps_option", 1, 5), label(21, "NPS Input Option (0=No, 1=Yes)"), label(67, "LOADFILE")}};
inline constexpr Record nps_file{"NPS file", {text("model", "nps_file", 1, 512)}};
inline constexpr Record number_of_loads = count_record("Number of Loadings");
inline constexpr Record load_factors =
    factors("system", "load_scale_factor", "load_conversion_factor", "Loading Scale & Conversion Factors");
inline constexpr Record load_segment = integer_record("load", "segment", "Loading Segment Number");
inline constexpr Record load_value = time_pair_in_columns("load_value");

// time functions
inline constexpr Record number_of_time_functions = count_record("Number of Time Functions");
inline constexpr Record time_function{"time function",
                                      {integer("time_function_type", "isc", 6, 3), integer({}, "instance", 14, 3),
                                       text("time_function", "description", 22, 40)}};
inline constexpr Record time_function_value = time_pair_in_columns("time_function_value");

// segment parameters
inline constexpr Record number_of_parameters = count_record("Number of Segment Parameters");
inline constexpr Record scale_factors{
    "Scale Factors", {label(1, "======================== Scale Factors ====================================")}};
inline constexpr Record parameter{"parameter",
                                  {label(1, "ISC #: "), integer("parameter_type", "isc", 8, 5),
                                   label(13, " Instance: "), integer({}, "instance", 24, 3), label(27, " Scale: "),
                                   real("parameter", "scale_factor", 35, 10, 4), label(45, " Description:"),
                                   text("parameter", "description", 58, 40)}};
inline constexpr Record segment_assignments{
    "Segment Assignments",
    {label(1, "======================== Segment Assignments ====================================")}};
inline constexpr Record assigned_segment{"Segment", {integer({}, "segment number", 1, 5), label(11, "Segment")}};
inline constexpr Record parameter_value{"parameter value",
                                        {label(1, "Parameter: "), integer({}, "ISC number", 12, 5),
                                         label(22, " Instance: "), integer({}, "instance", 33, 3),
                                         label(36, "  Value: "), real("parameter_value", "value", 45, 20, 4)}};

// constants
inline constexpr Record number_of_constants = count_record("Number of Constants");
inline constexpr Record constant{"constant",
                                 {label(1, "ISC #: "), integer("constant_type", "isc", 8, 5), label(13, " Instance: "),
                                  integer({}, "instance", 24, 5), label(29, " Value: "),
                                  real("constant", "value", 37, 20, 4), label(57, "  Desc: "),
                                  text("constant", "description", 65, 40)}};

// initial conditions
inline constexpr Record repeated_number_of_systems{"number of systems", {integer({}, "number of systems", 1, 5)}};
inline constexpr Record repeated_number_of_segments{"number of segments", {integer({}, "number of segments", 1, 5)}};
inline constexpr Record initial_conditions_for_system{
    "Initial conditions for system",
    {label(6, "Initial conditions for system"), integer({}, "system number", 35, 3), text({}, "system name", 39, 15)}};
inline constexpr Record solids_transport_field =
    integer_record("system", "solids_transport_field", "Solids Transport Field");
inline constexpr Record solids_density{"Solids Density, g/mL",
                                       {real("system", "solids_density", 1, 10, 3), label(21, "Solids Density, g/mL")}};
inline constexpr Record maximum_concentration{
    "Maximum Allowed Concentration",
    {real("system", "maximum_concentration", 1, 15, 4), label(21, "Maximum Allowed Concentration")}};
inline constexpr Record initial_condition_caption{"caption of the initial conditions",
                                                  {label(1, "  Seg   Conc   DissF")}};
inline constexpr Record initial_condition{"initial condition",
                                          {integer({}, "segment number"), real("initial_condition", "concentration"),
                                           real("initial_condition", "dissolved_fraction")}};

} // namespace velm::records
