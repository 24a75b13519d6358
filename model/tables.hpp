#pragma once

#include "model/column.hpp"
#include "model/model.hpp"

/// Every datum of a model but the pairs of time series and the values of parameters, once: what load, save, the answers
/// of the headless host, the models of sessions, comparisons, checks, schema.sql and the documents have of it, they
/// have from here. `./dev tables` brings schema.sql and the documents up to date. In a table, the columns of one key of
/// the host stand side by side.
namespace velm::tables {

inline constexpr Table model{
    "model", "",
    std::array{
        column<&Model::model_type>("model_type", "GMODELTYPE", "", "code of the engine's module"),
        column<&Model::start_date, 0>("start_date_1", "GSEEDDATE", "",
                                      "date of the start, first of three integers in the engine's order"),
        column<&Model::start_date, 1>("start_date_2", {"GSEEDDATE", 1}, "", "date of the start, second integer"),
        column<&Model::start_date, 2>("start_date_3", {"GSEEDDATE", 2}, "", "date of the start, third integer"),
        column<&Model::start_time, 0>("start_time_1", "GSEEDTIME", "",
                                      "time of day of the start, first of three integers in the engine's order"),
        column<&Model::start_time, 1>("start_time_2", {"GSEEDTIME", 1}, "", "time of day of the start, second integer"),
        column<&Model::start_time, 2>("start_time_3", {"GSEEDTIME", 2}, "", "time of day of the start, third integer"),
        column<&Model::skip_date, 0>("skip_date_1", "GHYDSKIPDATE", "",
                                     "date up to which hydrodynamics are skipped, first of three integers"),
        column<&Model::skip_date, 1>("skip_date_2", {"GHYDSKIPDATE", 1}, "",
                                     "date up to which hydrodynamics are skipped, second integer"),
        column<&Model::skip_date, 2>("skip_date_3", {"GHYDSKIPDATE", 2}, "",
                                     "date up to which hydrodynamics are skipped, third integer"),
        column<&Model::skip_time, 0>("skip_time_1", "GHYDSKIPTIME", "",
                                     "time of day up to which hydrodynamics are skipped, first of three integers"),
        column<&Model::skip_time, 1>("skip_time_2", {"GHYDSKIPTIME", 1}, "",
                                     "time of day up to which hydrodynamics are skipped, second integer"),
        column<&Model::skip_time, 2>("skip_time_3", {"GHYDSKIPTIME", 2}, "",
                                     "time of day up to which hydrodynamics are skipped, third integer"),
        column<&Model::julian_end_time>("julian_end_time", "GENDJULIAN", "days", "end of the simulation",
                                        Rule::not_negative),
        column<&Model::mass_balance_table_output>("mass_balance_table_output", "GJMAS", "",
                                                  "code: which system the mass balance table is of"),
        column<&Model::solution_technique>("solution_technique", "GSOLUTIONTYPE", "",
                                           "code: how the engine integrates"),
        column<&Model::negative_solution>("negative_solution", "GNEGSLN", "",
                                          "code: whether concentrations may become negative"),
        column<&Model::restart>("restart", "GICRD", "", "code: whether a restart file is read or written"),
        column<&Model::time_optimization>("time_optimization", "GINTYP", "",
                                          "code: how the engine chooses its time step"),
        column<&Model::water_quality_linkage>("water_quality_linkage", "GVELMTOVELMLINK", "",
                                              "code: link to another water-quality module"),
        column<&Model::topt_factor>("topt_factor", "GFRACMAXTS", "",
                                    "fraction of the largest stable time step that is taken"),
        column<&Model::maximum_time_step>("maximum_time_step", "GMAXDT", "days", "", Rule::not_negative),
        column<&Model::minimum_time_step>("minimum_time_step", "GMINDT", "days", "", Rule::not_negative),
        column<&Model::print_interval>("print_interval", "GMODELOUTPUTINTERVAL", "days", "from one output to the next",
                                       Rule::not_negative),
        column<&Model::bed_volume_option>("bed_volume_option", "GBEDOPT", "",
                                          "code: bed of constant or of changing volume"),
        column<&Model::bed_compaction_time_step>("bed_compaction_time_step", "GBEDDT", "days", "", Rule::not_negative),
        factor_column<&Model::volume_scale_factor>("volume_scale_factor", "GSCALV",
                                                   "factor on the segments' volumes, to try variants"),
        factor_column<&Model::volume_conversion_factor>("volume_conversion_factor", "GCONVV",
                                                        "factor from the unit of the segments' volumes to m3"),
        text_column<&Model::hydrodynamic_file>(
            "hydrodynamic_file", "GHYDROFILE", 512,
            "path of the hydrodynamic file; exported when segment 1 has flow option 3"),
        column<&Model::nps_option>("nps_option", "GLOPT", "", "above 0: non-point loads also come from nps_file"),
        text_column<&Model::nps_file>("nps_file", "GNPSFILE", 512, "path of the file of non-point loads"),
    }};

inline constexpr Table system{
    "system", "GNUMSYS",
    std::array{
        text_column<&System::name>("name", "GSYSNAME", 30).without_default(),
        text_column<&System::tag>("tag", {"GSYSNAME", 1}, 5, "short name"),
        factor_column<&System::boundaries, &SegmentSeriesSet::scale_factor>(
            "boundary_scale_factor", "GSCALB", "factor on the system's boundary values, to try variants"),
        factor_column<&System::boundaries, &SegmentSeriesSet::conversion_factor>(
            "boundary_conversion_factor", "GCONVB", "factor from the unit of the boundary values to mg/L"),
        factor_column<&System::loads, &SegmentSeriesSet::scale_factor>(
            "load_scale_factor", "GSCALW", "factor on the system's load values, to try variants"),
        factor_column<&System::loads, &SegmentSeriesSet::conversion_factor>(
            "load_conversion_factor", "GCONVW", "factor from the unit of the load values to kg/day"),
        column<&System::solids_transport_field>("solids_transport_field", "GIFIELD", "",
                                                "number of the flow field that carries the system's solids"),
        column<&System::solids_density>("solids_density", "GDENSITY", "g/mL", "", Rule::not_negative),
        column<&System::maximum_concentration>("maximum_concentration", "GCMAX", "mg/L", "", Rule::not_negative),
    }};

inline constexpr Table segment{
    "segment", "GNUMSEG",
    std::array{
        text_column<&Segment::name>("name", "GSEGNAME", 40),
        column<&Segment::bottom_segment>("bottom_segment", "GBOTSEG", "", "number of the segment below; 0 for none",
                                         Rule::segment_below),
        column<&Segment::type>("type", "GSEGTYPE", "",
                               "1 surface water, 2 water below it, 3 surface bed, 4 bed below it"),
        column<&Segment::flow_option>("flow_option", "GIQOPT", "",
                                      "code; 3 for segment 1 when flows come from a hydrodynamic file"),
        column<&Segment::volume>("volume", "GVOLUME", "m3", "after the model's volume factors", Rule::not_negative),
        column<&Segment::velocity_multiplier>("velocity_multiplier", "GVMULT", "",
                                              "a in velocity (m/s) = a * flow ^ b"),
        column<&Segment::velocity_exponent>("velocity_exponent", "GVEXP", "", "b in velocity (m/s) = a * flow ^ b"),
        column<&Segment::depth_multiplier>("depth_multiplier", "GDMULT", "", "c in depth (m) = c * flow ^ d"),
        column<&Segment::depth_exponent>("depth_exponent", "GDEXP", "", "d in depth (m) = c * flow ^ d"),
        column<&Segment::slope>("slope", "GSEGSLOPE", "m/m", "fall along the length"),
        column<&Segment::length>("length", "GSEGLENGTH", "m", "along the flow", Rule::not_negative),
        column<&Segment::width>("width", "GSEGWIDTH", "m", "", Rule::not_negative),
        column<&Segment::roughness>("roughness", "GSEGROUGH", "", "Manning's n", Rule::not_negative),
        column<&Segment::minimum_depth>("minimum_depth", "GSEGMINDEPTH", "m", "depth that stays at no flow",
                                        Rule::not_negative),
        column<&Segment::initial_surface_elevation>("initial_surface_elevation", "GINITIALSURFACEELEVATION", "m",
                                                    "water level at the start"),
        column<&Segment::bottom_elevation>("bottom_elevation", "GBOTTOMELEVATION", "m"),
        column<&Segment::side_slope>("side_slope", "GSIDESLOPE", "m/m", "horizontal to vertical"),
        column<&Segment::initial_depth>("initial_depth", "GINITIALDEPTH", "m", "", Rule::not_negative),
        column<&Segment::weir_height>("weir_height", "GWEIRHEIGHT", "m", "0 for no weir", Rule::not_negative),
        column<&Segment::weir_type>("weir_type", "GWEIRTYPE", "", "code"),
    }};

inline constexpr Table initial_condition{
    "initial_condition", "",
    std::array{
        column<&InitialCondition::concentration>("concentration", "GINITC", "mg/L").without_default(),
        column<&InitialCondition::dissolved_fraction>("dissolved_fraction", "GFDISS", "", "0 to 1", Rule::fraction)
            .with_default("1"),
    }};

inline constexpr Table flow_field{"flow_field", "GNFIELD",
                                  std::array{
                                      factor_column<&FlowField::scale_factor>(
                                          "scale_factor", "GSCALEQ", "factor on the field's flows, to try variants"),
                                      factor_column<&FlowField::conversion_factor>(
                                          "conversion_factor", "GCONVQ", "factor from the unit of the flows to m3/s"),
                                  }};

inline constexpr Table flow_function{"flow_function", "GNINQ",
                                     std::array{
                                         text_column<&FlowFunction::description>("description", "GFLOWFUNCDESC", 80),
                                     }};

inline constexpr Table flow_path{
    "flow_path", "GNOQS",
    std::array{
        column<&FlowPath::first_segment>("first_segment", "GJQ", "", "number of a segment; 0 for the world outside",
                                         Rule::segment_or_outside),
        column<&FlowPath::second_segment>("second_segment", "GIQ", "", "number of a segment; 0 for the world outside",
                                          Rule::segment_or_outside),
        column<&FlowPath::fraction>("fraction", "GBQ", "", "part of the function's flow that takes this step",
                                    Rule::fraction)
            .with_default("1"),
    }};

inline constexpr Table exchange_field{
    "exchange_field", "GNRFLD",
    std::array{
        factor_column<&ExchangeField::scale_factor>("scale_factor", "GSCALER",
                                                    "factor on the field's dispersion values, to try variants"),
        factor_column<&ExchangeField::conversion_factor>("conversion_factor", "GCONVR",
                                                         "factor from the unit of the dispersion values to m2/s"),
    }};

inline constexpr Table exchange_function{
    "exchange_function", "GNTEX",
    std::array{
        text_column<&ExchangeFunction::description>("description", "GEXCHANGEFUNCDESC", 80),
    }};

inline constexpr Table exchange_pair{
    "exchange_pair", "GNORS",
    std::array{
        column<&ExchangePair::first_segment>("first_segment", "GJRSEG", "",
                                             "number of a segment; 0 for the world outside", Rule::segment_or_outside),
        column<&ExchangePair::second_segment>("second_segment", "GIRSEG", "",
                                              "number of a segment; 0 for the world outside", Rule::segment_or_outside),
        column<&ExchangePair::area>("area", "GXAREA", "m2", "cross section through which the two mix",
                                    Rule::not_negative)
            .without_default(),
        column<&ExchangePair::length>("length", "GLENGTH", "m", "mixing length", Rule::not_negative).without_default(),
    }};

inline constexpr Table boundary{
    "boundary", "GNOBC",
    std::array{
        column<&SegmentSeries::segment>("segment", "GIBC", "", "number of the segment at the boundary", Rule::segment),
    }};

inline constexpr Table load{"load", "GNOWK",
                            std::array{
                                column<&SegmentSeries::segment>(
                                    "segment", "GIWK", "", "number of the segment that the load enters", Rule::segment),
                            }};

inline constexpr Table time_function_type{
    "time_function_type", "GNUMTFTYPE",
    std::array{
        column<&InstanceType<TimeFunction>::isc>("isc", "GTFISC", "", "the engine's number for the kind", Rule::unique),
    }};

inline constexpr Table time_function{
    "time_function", "GNUMTIMEFUNC",
    std::array{
        column<&TimeFunction::used>("used", "GTFISUSED", "", "1: exported; 0: kept for later").with_default("1"),
        text_column<&TimeFunction::description>("description", "GTFDESC", 80),
    }};

inline constexpr Table parameter_type{
    "parameter_type", "GNUMPARAMTYPE",
    std::array{
        column<&InstanceType<Parameter>::isc>("isc", "GPARAMISC", "", "the engine's number for the kind", Rule::unique),
    }};

inline constexpr Table parameter{
    "parameter", "GNUMPARAMBYISC",
    std::array{
        column<&Parameter::used>("used", "GPARAMISUSED", "", "1: exported; 0: kept for later").with_default("1"),
        text_column<&Parameter::description>("description", "GDESCPARAM", 60),
        factor_column<&Parameter::scale_factor>("scale_factor", "GSCALEPARAMBYISC", "factor on the parameter's values"),
    }};

inline constexpr Table constant_type{
    "constant_type", "GNUMCONST",
    std::array{
        column<&InstanceType<Constant>::isc>("isc", "GCONSTTYPEISC", "", "the engine's number for the kind",
                                             Rule::unique),
    }};

inline constexpr Table constant{
    "constant", "GNUMCONSTBYISC",
    std::array{
        column<&Constant::used>("used", "GCONSTISUSED", "", "1: exported; 0: kept for later").with_default("1"),
        text_column<&Constant::description>("description", "GCONSTDESCBYISC", 60),
        column<&Constant::value>("value", "GCONSTVALUEBYISC", "", "in the unit of the kind").without_default(),
    }};

} // namespace velm::tables
