#include "headless_host/model_answers.hpp"

#include <algorithm>
#include <array>
#include <limits>

namespace velm {

namespace {

template <class Items>
std::int32_t count(const Items& items)
{
    constexpr std::size_t most = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::min(items.size(), most));
}

std::int32_t flag(bool used)
{
    return used ? 1 : 0;
}

void put_triple(const Request& request, const std::array<std::int32_t, 3>& triple)
{
    request.put(0, triple[0]);
    request.put(1, triple[1]);
    request.put(2, triple[2]);
}

void put_name_and_tag(const Request& request, const System& system)
{
    request.put_text(1, system.name);
    request.put_text(2, system.tag);
}

void put_time_pair(const Request& request, const TimeSeries& series)
{
    request.put(3, request.pick(series.times, 2, "the series has", "time pair"));
    request.put(4, request.pick(series.values, 2, "the series has values for", "time pair"));
}

void put_all_time_pairs(const Request& request, const TimeSeries& series)
{
    request.put_series(2, series.times);
    request.put_series(3, series.values);
}

// Indices come outermost first, so that an item's place among the arguments is the same for each of its keys,
// but for the segment of GIQOPT and the ISC number and instance of GCONSTPARAM.

const System& system(const Model& model, const Request& request)
{
    return request.pick(model.systems, 0, "the model has", "system");
}

const SegmentSeries& boundary(const Model& model, const Request& request)
{
    return request.pick(system(model, request).boundaries.items, 1, "the system has", "boundary");
}

const SegmentSeries& load(const Model& model, const Request& request)
{
    return request.pick(system(model, request).loads.items, 1, "the system has", "load");
}

const InitialCondition& initial_condition(const Model& model, const Request& request)
{
    return request.pick(system(model, request).initial_conditions, 1, "the system has initial conditions for",
                        "segment");
}

const Segment& segment(const Model& model, const Request& request, std::size_t argument = 0)
{
    return request.pick(model.segments, argument, "the model has", "segment");
}

const FlowField& flow_field(const Model& model, const Request& request)
{
    return request.pick(model.flow_fields, 0, "the model has", "flow field");
}

const FlowFunction& flow_function(const Model& model, const Request& request)
{
    return request.pick(flow_field(model, request).functions, 1, "the flow field has", "flow function");
}

const FlowPath& flow_path(const Model& model, const Request& request)
{
    return request.pick(flow_function(model, request).paths, 2, "the flow function has", "flow path");
}

const ExchangeField& exchange_field(const Model& model, const Request& request)
{
    return request.pick(model.exchange_fields, 0, "the model has", "exchange field");
}

const ExchangeFunction& exchange_function(const Model& model, const Request& request)
{
    return request.pick(exchange_field(model, request).functions, 1, "the exchange field has", "exchange function");
}

const ExchangePair& exchange_pair(const Model& model, const Request& request)
{
    return request.pick(exchange_function(model, request).pairs, 2, "the exchange function has", "segment pair");
}

template <class Instance>
std::int32_t isc_of_type(const Request& request, const std::vector<InstanceType<Instance>>& types)
{
    return request.pick(types, 0, "the model has", "type").isc;
}

template <class Map>
const auto& instances(const Request& request, const Map& types, std::size_t isc_argument = 0)
{
    const auto found = types.find(request.integer(isc_argument));
    if (found == types.end()) {
        request.unanswerable("the model has no type of that ISC number");
    }
    return found->second->instances;
}

template <class Map>
const auto& instance(const Request& request, const Map& types, std::size_t isc_argument = 0)
{
    return request.pick(instances(request, types, isc_argument), isc_argument + 1, "the type has", "instance");
}

/// The plug-in takes a type without time functions for a type with one, and asks whether that one is used.
template <class Map>
std::int32_t time_function_is_used(const Request& request, const Map& types)
{
    const bool is_asked_of_none = instances(request, types).empty() && request.integer(1) == 1;
    return is_asked_of_none ? flag(false) : flag(instance(request, types).used);
}

template <class Instance>
auto by_isc(const std::vector<InstanceType<Instance>>& types)
{
    std::unordered_map<std::int32_t, const InstanceType<Instance>*> map;
    for (const InstanceType<Instance>& type : types) {
        map.emplace(type.isc, &type);
    }
    return map;
}

} // namespace

ModelAnswers::ModelAnswers(const Model& model)
    : model_(model), time_function_types_(by_isc(model.time_function_types)),
      parameter_types_(by_isc(model.parameter_types)), constant_types_(by_isc(model.constant_types))
{
}

void ModelAnswers::answer(const Request& r) const
{
    const Model& m = model_;
    switch (r.key_position()) {
    // system information
    case "GMODELTYPE"_key: return r.put(0, m.model_type);
    case "GSEEDTIME"_key: return put_triple(r, m.start_time);
    case "GSEEDDATE"_key: return put_triple(r, m.start_date);
    case "GHYDSKIPDATE"_key: return put_triple(r, m.skip_date);
    case "GHYDSKIPTIME"_key: return put_triple(r, m.skip_time);
    case "GENDJULIAN"_key: return r.put(0, m.julian_end_time);
    case "GNUMSYS"_key: return r.put(0, count(m.systems));
    case "GJMAS"_key: return r.put(0, m.mass_balance_table_output);
    case "GSOLUTIONTYPE"_key: return r.put(0, m.solution_technique);
    case "GNEGSLN"_key: return r.put(0, m.negative_solution);
    case "GICRD"_key: return r.put(0, m.restart);
    case "GINTYP"_key: return r.put(0, m.time_optimization);
    case "GVELMTOVELMLINK"_key: return r.put(0, m.water_quality_linkage);
    case "GFRACMAXTS"_key: return r.put(0, m.topt_factor);
    case "GMAXDT"_key: return r.put(0, m.maximum_time_step);
    case "GMINDT"_key: return r.put(0, m.minimum_time_step);
    case "GMODELOUTPUTINTERVAL"_key: return r.put(0, m.print_interval);
    case "GSYSNAME"_key: return put_name_and_tag(r, system(m, r));

    // segments
    case "GNUMSEG"_key: return r.put(0, count(m.segments));
    case "GBEDOPT"_key: return r.put(0, m.bed_volume_option);
    case "GBEDDT"_key: return r.put(0, m.bed_compaction_time_step);
    case "GSCALV"_key: return r.put(0, m.volume_scale_factor);
    case "GCONVV"_key: return r.put(0, m.volume_conversion_factor);
    case "GSEGNAME"_key: return r.put_text(1, segment(m, r).name);
    case "GBOTSEG"_key: return r.put(1, segment(m, r).bottom_segment);
    case "GSEGTYPE"_key: return r.put(1, segment(m, r).type);
    case "GIQOPT"_key: return r.put(0, segment(m, r, 1).flow_option);
    case "GVOLUME"_key: return r.put(1, segment(m, r).volume);
    case "GVMULT"_key: return r.put(1, segment(m, r).velocity_multiplier);
    case "GVEXP"_key: return r.put(1, segment(m, r).velocity_exponent);
    case "GDMULT"_key: return r.put(1, segment(m, r).depth_multiplier);
    case "GDEXP"_key: return r.put(1, segment(m, r).depth_exponent);
    case "GSEGSLOPE"_key: return r.put(1, segment(m, r).slope);
    case "GSEGLENGTH"_key: return r.put(1, segment(m, r).length);
    case "GSEGWIDTH"_key: return r.put(1, segment(m, r).width);
    case "GSEGROUGH"_key: return r.put(1, segment(m, r).roughness);
    case "GSEGMINDEPTH"_key: return r.put(1, segment(m, r).minimum_depth);
    case "GINITIALSURFACEELEVATION"_key: return r.put(1, segment(m, r).initial_surface_elevation);
    case "GBOTTOMELEVATION"_key: return r.put(1, segment(m, r).bottom_elevation);
    case "GSIDESLOPE"_key: return r.put(1, segment(m, r).side_slope);
    case "GINITIALDEPTH"_key: return r.put(1, segment(m, r).initial_depth);
    case "GWEIRHEIGHT"_key: return r.put(1, segment(m, r).weir_height);
    case "GWEIRTYPE"_key: return r.put(1, segment(m, r).weir_type);

    // flow paths
    case "GNFIELD"_key: return r.put(0, count(m.flow_fields));
    case "GHYDROFILE"_key: return r.put_text(0, m.hydrodynamic_file);
    case "GNINQ"_key: return r.put(1, count(flow_field(m, r).functions));
    case "GNOQS"_key: return r.put(2, count(flow_function(m, r).paths));
    case "GFLOWFUNCDESC"_key: return r.put_text(2, flow_function(m, r).description);
    case "GJQ"_key: return r.put(3, flow_path(m, r).first_segment);
    case "GIQ"_key: return r.put(3, flow_path(m, r).second_segment);
    case "GBQ"_key: return r.put(3, flow_path(m, r).fraction);

    // flow time series
    case "GSCALEQ"_key: return r.put(1, flow_field(m, r).scale_factor);
    case "GCONVQ"_key: return r.put(1, flow_field(m, r).conversion_factor);
    case "GNBRKQ"_key: return r.put(2, count(flow_function(m, r).series.times));
    case "GNOQFUNC"_key: return put_time_pair(r, flow_function(m, r).series);

    // dispersive exchanges
    case "GNRFLD"_key: return r.put(0, count(m.exchange_fields));
    case "GNTEX"_key: return r.put(1, count(exchange_field(m, r).functions));
    case "GSCALER"_key: return r.put(1, exchange_field(m, r).scale_factor);
    case "GCONVR"_key: return r.put(1, exchange_field(m, r).conversion_factor);
    case "GEXCHANGEFUNCDESC"_key: return r.put_text(2, exchange_function(m, r).description);
    case "GNORS"_key: return r.put(2, count(exchange_function(m, r).pairs));
    case "GJRSEG"_key: return r.put(3, exchange_pair(m, r).first_segment);
    case "GIRSEG"_key: return r.put(3, exchange_pair(m, r).second_segment);
    case "GXAREA"_key: return r.put(3, exchange_pair(m, r).area);
    case "GLENGTH"_key: return r.put(3, exchange_pair(m, r).length);
    case "GNOBRKS"_key: return r.put(2, count(exchange_function(m, r).series.times));
    case "GNORFUNC"_key: return put_time_pair(r, exchange_function(m, r).series);

    // boundaries
    case "GNOBC"_key: return r.put(1, count(system(m, r).boundaries.items));
    case "GSCALB"_key: return r.put(1, system(m, r).boundaries.scale_factor);
    case "GCONVB"_key: return r.put(1, system(m, r).boundaries.conversion_factor);
    case "GIBC"_key: return r.put(2, boundary(m, r).segment);
    case "GNBFP"_key: return r.put(2, count(boundary(m, r).series.times));
    case "GALLBOUNDFUNC"_key: return put_all_time_pairs(r, boundary(m, r).series);

    // loads
    case "GLOPT"_key: return r.put(0, m.nps_option);
    case "GNPSFILE"_key: return r.put_text(0, m.nps_file);
    case "GNOWK"_key: return r.put(1, count(system(m, r).loads.items));
    case "GSCALW"_key: return r.put(1, system(m, r).loads.scale_factor);
    case "GCONVW"_key: return r.put(1, system(m, r).loads.conversion_factor);
    case "GIWK"_key: return r.put(2, load(m, r).segment);
    case "GNBWK"_key: return r.put(2, count(load(m, r).series.times));
    case "GALLLOADFUNC"_key: return put_all_time_pairs(r, load(m, r).series);

    // time functions
    case "GNUMTFTYPE"_key: return r.put(0, count(m.time_function_types));
    case "GTFISC"_key: return r.put(1, isc_of_type(r, m.time_function_types));
    case "GNUMTIMEFUNC"_key: return r.put(1, count(instances(r, time_function_types_)));
    case "GTFISUSED"_key: return r.put(2, time_function_is_used(r, time_function_types_));
    case "GTFDESC"_key: return r.put_text(2, instance(r, time_function_types_).description);
    case "GNBRKTF"_key: return r.put(2, count(instance(r, time_function_types_).series.times));
    case "GBRKTF"_key: return put_time_pair(r, instance(r, time_function_types_).series);

    // segment parameters
    case "GNUMPARAMTYPE"_key: return r.put(0, count(m.parameter_types));
    case "GPARAMISC"_key: return r.put(1, isc_of_type(r, m.parameter_types));
    case "GNUMPARAMBYISC"_key: return r.put(1, count(instances(r, parameter_types_)));
    case "GPARAMISUSED"_key: return r.put(2, flag(instance(r, parameter_types_).used));
    case "GDESCPARAM"_key: return r.put_text(2, instance(r, parameter_types_).description);
    case "GSCALEPARAMBYISC"_key: return r.put(2, instance(r, parameter_types_).scale_factor);
    case "GCONSTPARAM"_key:
        return r.put(3, r.pick(instance(r, parameter_types_, 1).values, 0, "the parameter has values for", "segment"));

    // constants
    case "GNUMCONST"_key: return r.put(0, count(m.constant_types));
    case "GCONSTTYPEISC"_key: return r.put(1, isc_of_type(r, m.constant_types));
    case "GNUMCONSTBYISC"_key: return r.put(1, count(instances(r, constant_types_)));
    case "GCONSTISUSED"_key: return r.put(2, flag(instance(r, constant_types_).used));
    case "GCONSTVALUEBYISC"_key: return r.put(2, instance(r, constant_types_).value);
    case "GCONSTDESCBYISC"_key: return r.put_text(2, instance(r, constant_types_).description);

    // initial conditions
    case "GIFIELD"_key: return r.put(1, system(m, r).solids_transport_field);
    case "GDENSITY"_key: return r.put(1, system(m, r).solids_density);
    case "GCMAX"_key: return r.put(1, system(m, r).maximum_concentration);
    case "GINITC"_key: return r.put(2, initial_condition(m, r).concentration);
    case "GFDISS"_key: return r.put(2, initial_condition(m, r).dissolved_fraction);

    default: r.unanswerable("no model answers this key");
    }
}

} // namespace velm
