#include "bench/workloads.hpp"

#include "bench/model_values.hpp"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace velm::bench {
namespace {

TimeSeries series(ModelValues& values, std::size_t pairs, float steps_a_day, Quantity quantity)
{
    TimeSeries series;
    series.times.resize(pairs);
    series.values.resize(pairs);
    for (std::size_t i = 0; i < pairs; ++i) {
        series.times[i] = static_cast<float>(i) / steps_a_day;
        series.values[i] = values.draw(quantity);
    }
    return series;
}

SegmentSeriesSet hourly_series(ModelValues& values, std::size_t count, std::size_t pairs, Quantity quantity)
{
    SegmentSeriesSet set;
    for (std::size_t i = 0; i < count; ++i) {
        set.items.push_back({1, series(values, pairs, 24, quantity)});
    }
    return set;
}

Segment segment(ModelValues& values, std::size_t number)
{
    Segment segment;
    segment.name = "Reach " + std::to_string(number);
    segment.type = number == 1 ? 1 : 3; // the river flows through the first
    segment.volume = values.draw(volume);
    segment.velocity_multiplier = values.draw(fraction);
    segment.velocity_exponent = values.draw(fraction);
    segment.depth_multiplier = values.draw(fraction);
    segment.depth_exponent = values.draw(fraction);
    segment.slope = values.draw(fraction);
    segment.length = values.draw(length);
    segment.width = values.draw(length);
    segment.roughness = values.draw(fraction);
    segment.minimum_depth = values.draw(fraction);
    segment.initial_surface_elevation = values.draw(depth);
    segment.bottom_elevation = -values.draw(depth);
    segment.side_slope = values.draw(fraction);
    segment.initial_depth = segment.volume / (segment.length * segment.width);
    return segment; // without a weir
}

/// A model in which a check finds nothing to warn of: a river through the first segment, and a run of so many days.
Model river(ModelValues& values, std::size_t segments, float days)
{
    Model model;
    model.start_date = {2001, 1, 1};
    model.julian_end_time = days;
    model.time_optimization = 1;
    model.maximum_time_step = 1;
    model.print_interval = 1;
    for (std::size_t i = 1; i <= segments; ++i) {
        model.segments.push_back(segment(values, i));
    }
    model.flow_fields = {{1, 1, {{"River", {{0, 1, 1}, {1, 0, 1}}, {{0}, {1}}}}}};
    System tracer;
    tracer.name = "Tracer";
    tracer.boundaries.items = {{1, {{0}, {1}}}};
    tracer.initial_conditions.resize(segments);
    model.systems.push_back(std::move(tracer));
    return model;
}

Parameter parameter(ModelValues& values, std::size_t segments)
{
    Parameter parameter{true, "Rate that differs from reach to reach", 1, std::vector<float>(segments)};
    std::ranges::generate(parameter.values, [&] { return values.draw(concentration); });
    return parameter;
}

/// 20 types of two parameters or, where the rows are more than 99,999 segments have with them, as many as it takes.
Model segment_model(std::size_t rows)
{
    const std::size_t segments = std::min<std::size_t>(99'999, rows / 41);
    const std::size_t types = (rows / segments - 1) / 2;
    ModelValues values(2);
    Model model = river(values, segments, 1);
    for (std::size_t isc = 1; isc <= types; ++isc) {
        model.parameter_types.push_back(
            {static_cast<std::int32_t>(isc), {parameter(values, segments), parameter(values, segments)}});
    }
    return model;
}

Model boundary_model(std::size_t rows)
{
    const std::size_t pairs = rows / (std::size_t{8} * 24);
    ModelValues values(3);
    Model model = river(values, 1, static_cast<float>(pairs / 24));
    for (std::size_t i = 1; i <= 8; ++i) {
        System system;
        system.name = "System " + std::to_string(i);
        system.boundaries = hourly_series(values, 12, pairs, concentration);
        system.loads = hourly_series(values, 12, pairs, load);
        system.initial_conditions.resize(model.segments.size());
        model.systems.push_back(std::move(system));
    }
    return model;
}

Model flow_model(std::size_t rows)
{
    const std::size_t pairs = rows / (std::size_t{6} * 300);
    ModelValues values(4);
    Model model = river(values, 1, static_cast<float>(pairs));
    model.flow_fields.clear();
    for (int field = 0; field < 6; ++field) {
        FlowField flow_field;
        for (int function = 0; function < 300; ++function) {
            flow_field.functions.push_back({"Inflow", {{0, 1, 1}, {1, 0, 1}}, series(values, pairs, 1, flow)});
        }
        model.flow_fields.push_back(std::move(flow_field));
    }
    return model;
}

struct Workload {
    std::string_view name;
    Model (*make)(std::size_t rows);
    std::size_t usual_rows;
};

constexpr Workload workloads[] = {
    {"segments", segment_model, 99'999 * 41},
    {"boundaries", boundary_model, 8 * 24 * 99'999},
    {"flows", flow_model, 6 * 300 * 1000},
};

} // namespace

Model workload(std::string_view name, std::size_t rows)
{
    for (const Workload& known : workloads) {
        if (known.name == name) {
            return known.make(rows == 0 ? known.usual_rows : rows);
        }
    }
    throw std::invalid_argument("no workload '" + std::string(name) + "'; there are segments, boundaries and flows");
}

std::size_t number_of_reals(const Model& model)
{
    constexpr std::size_t of_a_segment = 16;
    constexpr std::size_t of_a_pair = 2;
    std::size_t reals = model.segments.size() * of_a_segment;
    for (const auto& type : model.parameter_types) {
        reals += type.instances.size() * model.segments.size();
    }
    for (const System& system : model.systems) {
        for (const SegmentSeriesSet* set : {&system.boundaries, &system.loads}) {
            for (const SegmentSeries& item : set->items) {
                reals += of_a_pair * item.series.times.size();
            }
        }
    }
    for (const FlowField& field : model.flow_fields) {
        for (const FlowFunction& function : field.functions) {
            reals += of_a_pair * function.series.times.size();
        }
    }
    return reals;
}

} // namespace velm::bench
