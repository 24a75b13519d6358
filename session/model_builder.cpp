#include "session/model_builder.hpp"

#include "headless_host/request.hpp"

#include <array>
#include <string>
#include <utility>

namespace velm {
namespace {

using Exchange = RecordedExchange;

std::int32_t integer(const Exchange& exchange, std::size_t argument)
{
    return exchange.values[argument].integer;
}

float real(const Exchange& exchange, std::size_t argument)
{
    return exchange.values[argument].real;
}

/// Without the blanks at its end, which a host adds again; a NUL is part of the text.
std::string text(const Exchange& exchange, std::size_t argument)
{
    const std::string& field = exchange.values[argument].text;
    return field.substr(0, field.find_last_not_of(' ') + 1);
}

std::array<std::int32_t, 3> triple(const Exchange& exchange)
{
    return {integer(exchange, 0), integer(exchange, 1), integer(exchange, 2)};
}

/// The item with the number that stands in an argument; it may be the next after those that there are.
template <class Item>
Item& item(std::vector<Item>& items, const Exchange& exchange, std::size_t argument)
{
    const std::int64_t number = integer(exchange, argument);
    if (number < 1 || static_cast<std::uint64_t>(number) > items.size() + 1) {
        throw Misplaced(std::string(exchange.key().arguments[argument].meaning) + " " + std::to_string(number) +
                        " is asked for where " + std::to_string(items.size() + 1) + " would be the next");
    }
    if (static_cast<std::size_t>(number) == items.size() + 1) {
        items.emplace_back();
    }
    return items[static_cast<std::size_t>(number) - 1];
}

void take_time_pair(TimeSeries& series, const Exchange& exchange)
{
    item(series.times, exchange, 2) = real(exchange, 3);
    item(series.values, exchange, 2) = real(exchange, 4);
}

void take_series(TimeSeries& series, const Exchange& exchange)
{
    series.times = exchange.values[2].series;
    series.values = exchange.values[3].series;
}

template <class Instance>
InstanceType<Instance>& type_of(std::vector<InstanceType<Instance>>& types,
                                const std::unordered_map<std::int32_t, std::size_t>& positions,
                                const Exchange& exchange, std::size_t isc_argument)
{
    const auto found = positions.find(integer(exchange, isc_argument));
    if (found == positions.end()) {
        throw Misplaced("no type of that ISC number has been named");
    }
    return types[found->second];
}

template <class Instance>
Instance& instance(std::vector<InstanceType<Instance>>& types,
                   const std::unordered_map<std::int32_t, std::size_t>& positions, const Exchange& exchange,
                   std::size_t isc_argument = 0)
{
    return item(type_of(types, positions, exchange, isc_argument).instances, exchange, isc_argument + 1);
}

template <class Instance>
void take_isc(std::vector<InstanceType<Instance>>& types, std::unordered_map<std::int32_t, std::size_t>& positions,
              const Exchange& exchange)
{
    item(types, exchange, 0).isc = integer(exchange, 1);
    positions.emplace(integer(exchange, 1), static_cast<std::size_t>(integer(exchange, 0)) - 1);
}

SegmentSeries& boundary(Model& model, const Exchange& exchange)
{
    return item(item(model.systems, exchange, 0).boundaries.items, exchange, 1);
}

SegmentSeries& load(Model& model, const Exchange& exchange)
{
    return item(item(model.systems, exchange, 0).loads.items, exchange, 1);
}

InitialCondition& initial_condition(Model& model, const Exchange& exchange)
{
    return item(item(model.systems, exchange, 0).initial_conditions, exchange, 1);
}

FlowFunction& flow_function(Model& model, const Exchange& exchange)
{
    return item(item(model.flow_fields, exchange, 0).functions, exchange, 1);
}

FlowPath& flow_path(Model& model, const Exchange& exchange)
{
    return item(flow_function(model, exchange).paths, exchange, 2);
}

ExchangeFunction& exchange_function(Model& model, const Exchange& exchange)
{
    return item(item(model.exchange_fields, exchange, 0).functions, exchange, 1);
}

ExchangePair& exchange_pair(Model& model, const Exchange& exchange)
{
    return item(exchange_function(model, exchange).pairs, exchange, 2);
}

void take_name_and_tag(System& system, const Exchange& exchange)
{
    system.name = text(exchange, 1);
    system.tag = text(exchange, 2);
}

} // namespace

void ModelBuilder::take(const RecordedExchange& e)
{
    Model& m = model_;
    const auto segment = [&]() -> Segment& { return item(m.segments, e, 0); };
    const auto system = [&]() -> System& { return item(m.systems, e, 0); };
    const auto flow_field = [&]() -> FlowField& { return item(m.flow_fields, e, 0); };
    const auto exchange_field = [&]() -> ExchangeField& { return item(m.exchange_fields, e, 0); };
    const auto time_function = [&]() -> TimeFunction& {
        return instance(m.time_function_types, time_function_types_, e);
    };
    const auto parameter = [&](std::size_t isc = 0) -> Parameter& {
        return instance(m.parameter_types, parameter_types_, e, isc);
    };
    const auto constant = [&]() -> Constant& { return instance(m.constant_types, constant_types_, e); };

    switch (e.key_position) {
    // system information
    case "GMODELTYPE"_key: m.model_type = integer(e, 0); break;
    case "GSEEDTIME"_key: m.start_time = triple(e); break;
    case "GSEEDDATE"_key: m.start_date = triple(e); break;
    case "GHYDSKIPDATE"_key: m.skip_date = triple(e); break;
    case "GHYDSKIPTIME"_key: m.skip_time = triple(e); break;
    case "GENDJULIAN"_key: m.julian_end_time = real(e, 0); break;
    case "GJMAS"_key: m.mass_balance_table_output = integer(e, 0); break;
    case "GSOLUTIONTYPE"_key: m.solution_technique = integer(e, 0); break;
    case "GNEGSLN"_key: m.negative_solution = integer(e, 0); break;
    case "GICRD"_key: m.restart = integer(e, 0); break;
    case "GINTYP"_key: m.time_optimization = integer(e, 0); break;
    case "GVELMTOVELMLINK"_key: m.water_quality_linkage = integer(e, 0); break;
    case "GFRACMAXTS"_key: m.topt_factor = real(e, 0); break;
    case "GMAXDT"_key: m.maximum_time_step = real(e, 0); break;
    case "GMINDT"_key: m.minimum_time_step = real(e, 0); break;
    case "GMODELOUTPUTINTERVAL"_key: m.print_interval = real(e, 0); break;
    case "GSYSNAME"_key: take_name_and_tag(system(), e); break;

    // segments
    case "GBEDOPT"_key: m.bed_volume_option = integer(e, 0); break;
    case "GBEDDT"_key: m.bed_compaction_time_step = real(e, 0); break;
    case "GSCALV"_key: m.volume_scale_factor = real(e, 0); break;
    case "GCONVV"_key: m.volume_conversion_factor = real(e, 0); break;
    case "GSEGNAME"_key: segment().name = text(e, 1); break;
    case "GBOTSEG"_key: segment().bottom_segment = integer(e, 1); break;
    case "GSEGTYPE"_key: segment().type = integer(e, 1); break;
    case "GIQOPT"_key: item(m.segments, e, 1).flow_option = integer(e, 0); break;
    case "GVOLUME"_key: segment().volume = real(e, 1); break;
    case "GVMULT"_key: segment().velocity_multiplier = real(e, 1); break;
    case "GVEXP"_key: segment().velocity_exponent = real(e, 1); break;
    case "GDMULT"_key: segment().depth_multiplier = real(e, 1); break;
    case "GDEXP"_key: segment().depth_exponent = real(e, 1); break;
    case "GSEGSLOPE"_key: segment().slope = real(e, 1); break;
    case "GSEGLENGTH"_key: segment().length = real(e, 1); break;
    case "GSEGWIDTH"_key: segment().width = real(e, 1); break;
    case "GSEGROUGH"_key: segment().roughness = real(e, 1); break;
    case "GSEGMINDEPTH"_key: segment().minimum_depth = real(e, 1); break;
    case "GINITIALSURFACEELEVATION"_key: segment().initial_surface_elevation = real(e, 1); break;
    case "GBOTTOMELEVATION"_key: segment().bottom_elevation = real(e, 1); break;
    case "GSIDESLOPE"_key: segment().side_slope = real(e, 1); break;
    case "GINITIALDEPTH"_key: segment().initial_depth = real(e, 1); break;
    case "GWEIRHEIGHT"_key: segment().weir_height = real(e, 1); break;
    case "GWEIRTYPE"_key: segment().weir_type = real(e, 1); break;

    // flow paths and flow time series
    case "GNFIELD"_key: ++passes_over_flow_fields_; break;
    case "GHYDROFILE"_key: m.hydrodynamic_file = text(e, 0); break;
    case "GNINQ"_key: (void)flow_field(); break;
    case "GNOQS"_key: (void)flow_function(m, e); break;
    case "GFLOWFUNCDESC"_key: // the first pass writes all of it, the second its beginning
        if (passes_over_flow_fields_ < 2) {
            flow_function(m, e).description = text(e, 2);
        }
        break;
    case "GJQ"_key: flow_path(m, e).first_segment = integer(e, 3); break;
    case "GIQ"_key: flow_path(m, e).second_segment = integer(e, 3); break;
    case "GBQ"_key: flow_path(m, e).fraction = real(e, 3); break;
    case "GSCALEQ"_key: flow_field().scale_factor = real(e, 1); break;
    case "GCONVQ"_key: flow_field().conversion_factor = real(e, 1); break;
    case "GNOQFUNC"_key: take_time_pair(flow_function(m, e).series, e); break;

    // dispersive exchanges
    case "GNTEX"_key: (void)exchange_field(); break;
    case "GSCALER"_key: exchange_field().scale_factor = real(e, 1); break;
    case "GCONVR"_key: exchange_field().conversion_factor = real(e, 1); break;
    case "GEXCHANGEFUNCDESC"_key: exchange_function(m, e).description = text(e, 2); break;
    case "GJRSEG"_key: exchange_pair(m, e).first_segment = integer(e, 3); break;
    case "GIRSEG"_key: exchange_pair(m, e).second_segment = integer(e, 3); break;
    case "GXAREA"_key: exchange_pair(m, e).area = real(e, 3); break;
    case "GLENGTH"_key: exchange_pair(m, e).length = real(e, 3); break;
    case "GNORFUNC"_key: take_time_pair(exchange_function(m, e).series, e); break;

    // boundaries and loads
    case "GSCALB"_key: system().boundaries.scale_factor = real(e, 1); break;
    case "GCONVB"_key: system().boundaries.conversion_factor = real(e, 1); break;
    case "GIBC"_key: boundary(m, e).segment = integer(e, 2); break;
    case "GALLBOUNDFUNC"_key: take_series(boundary(m, e).series, e); break;
    case "GLOPT"_key: m.nps_option = integer(e, 0); break;
    case "GNPSFILE"_key: m.nps_file = text(e, 0); break;
    case "GSCALW"_key: system().loads.scale_factor = real(e, 1); break;
    case "GCONVW"_key: system().loads.conversion_factor = real(e, 1); break;
    case "GIWK"_key: load(m, e).segment = integer(e, 2); break;
    case "GALLLOADFUNC"_key: take_series(load(m, e).series, e); break;

    // time functions
    case "GTFISC"_key: take_isc(m.time_function_types, time_function_types_, e); break;
    case "GNUMTIMEFUNC"_key: time_function_count_ = integer(e, 1); break;
    case "GTFISUSED"_key: take_time_function_used(e); break;
    case "GTFDESC"_key: time_function().description = text(e, 2); break;
    case "GBRKTF"_key: take_time_pair(time_function().series, e); break;

    // segment parameters
    case "GPARAMISC"_key: take_isc(m.parameter_types, parameter_types_, e); break;
    case "GPARAMISUSED"_key: parameter().used = integer(e, 2) >= 1; break;
    case "GDESCPARAM"_key: parameter().description = text(e, 2); break;
    case "GSCALEPARAMBYISC"_key: parameter().scale_factor = real(e, 2); break;
    case "GCONSTPARAM"_key: item(parameter(1).values, e, 0) = real(e, 3); break;

    // constants
    case "GCONSTTYPEISC"_key: take_isc(m.constant_types, constant_types_, e); break;
    case "GCONSTISUSED"_key: constant().used = integer(e, 2) >= 1; break;
    case "GCONSTVALUEBYISC"_key: constant().value = real(e, 2); break;
    case "GCONSTDESCBYISC"_key: constant().description = text(e, 2); break;

    // initial conditions
    case "GIFIELD"_key: system().solids_transport_field = integer(e, 1); break;
    case "GDENSITY"_key: system().solids_density = real(e, 1); break;
    case "GCMAX"_key: system().maximum_concentration = real(e, 1); break;
    case "GINITC"_key: initial_condition(m, e).concentration = real(e, 2); break;
    case "GFDISS"_key: initial_condition(m, e).dissolved_fraction = real(e, 2); break;

    default: break; // counts, the panel, progress and the output file name
    }
}

/// The plug-in takes a type without time functions for a type with one, and asks whether that one is used.
void ModelBuilder::take_time_function_used(const RecordedExchange& exchange)
{
    const bool used = integer(exchange, 2) == 1;
    if (used || time_function_count_ != 0) {
        instance(model_.time_function_types, time_function_types_, exchange).used = used;
    }
}

Model ModelBuilder::finish()
{
    for (InstanceType<Parameter>& type : model_.parameter_types) {
        for (Parameter& parameter : type.instances) {
            parameter.values.resize(model_.segments.size()); // those of unused ones are never asked for
        }
    }
    return std::move(model_);
}

} // namespace velm
