#include "bench/workloads.hpp"

#include "bench/model_values.hpp"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace velm::bench {
namespace {

constexpr std::size_t most_pairs = 100'000;

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
    segment.type = 1;
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
    segment.initial_depth = values.draw(depth);
    return segment; // without a weir
}

Parameter parameter(ModelValues& values, std::size_t segments)
{
    Parameter parameter{true, "Rate that differs from reach to reach", 1, std::vector<float>(segments)};
    std::ranges::generate(parameter.values, [&] { return values.draw(concentration); });
    return parameter;
}

template <class Visit>
void visit_series(const Model& model, Visit visit)
{
    for (const System& system : model.systems) {
        for (const SegmentSeriesSet* set : {&system.boundaries, &system.loads}) {
            for (const SegmentSeries& item : set->items) {
                visit(item.series);
            }
        }
    }
    for (const FlowField& field : model.flow_fields) {
        for (const FlowFunction& function : field.functions) {
            visit(function.series);
        }
    }
}

std::size_t parameter_count(const Model& model)
{
    std::size_t count = 0;
    for (const auto& type : model.parameter_types) {
        count += type.instances.size();
    }
    return count;
}

} // namespace

Model segment_model()
{
    constexpr std::size_t segments = 99'999;
    constexpr std::int32_t types = 20;
    ModelValues values(2);
    Model model;
    for (std::size_t i = 1; i <= segments; ++i) {
        model.segments.push_back(segment(values, i));
    }
    for (std::int32_t isc = 1; isc <= types; ++isc) {
        model.parameter_types.push_back({isc, {parameter(values, segments), parameter(values, segments)}});
    }
    return model;
}

Model boundary_model(std::size_t pairs)
{
    ModelValues values(3);
    Model model;
    model.segments.push_back(segment(values, 1));
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

Model flow_model()
{
    ModelValues values(4);
    Model model;
    model.segments.push_back(segment(values, 1));
    for (int field = 0; field < 6; ++field) {
        FlowField flow_field;
        for (int function = 0; function < 300; ++function) {
            flow_field.functions.push_back({"Inflow", {{0, 1, 1}}, series(values, 1000, 1, flow)});
        }
        model.flow_fields.push_back(std::move(flow_field));
    }
    return model;
}

Model model_of_pairs(std::size_t pairs)
{
    ModelValues values(5);
    Model model;
    model.segments.push_back(segment(values, 1));
    System system;
    system.name = "System";
    const std::size_t loads = (pairs + most_pairs - 1) / most_pairs;
    system.loads = hourly_series(values, loads, pairs / loads, load);
    system.initial_conditions.resize(1);
    model.systems.push_back(std::move(system));
    return model;
}

Model workload(std::string_view name)
{
    if (name == "segments") {
        return segment_model();
    }
    if (name == "boundaries") {
        return boundary_model();
    }
    if (name == "flows") {
        return flow_model();
    }
    throw std::invalid_argument("no workload '" + std::string(name) + "'; there are segments, boundaries and flows");
}

std::size_t data_size(const Model& model)
{
    constexpr std::size_t numbers_of_a_segment = 3 + 16;
    constexpr std::size_t number = 4;
    std::size_t size = model.segments.size() * parameter_count(model) * number;
    for (const Segment& segment : model.segments) {
        size += numbers_of_a_segment * number + segment.name.size();
    }
    visit_series(model, [&](const TimeSeries& series) { size += 2 * number * series.times.size(); });
    return size;
}

std::size_t row_count(const Model& model)
{
    std::size_t rows = model.segments.size() * (1 + parameter_count(model));
    visit_series(model, [&](const TimeSeries& series) { rows += series.times.size(); });
    return rows;
}

} // namespace velm::bench
