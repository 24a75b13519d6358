#include "bench/model_values.hpp"

#include <array>
#include <cmath>

namespace velm::bench {

float ModelValues::draw(Quantity quantity)
{
    const double least = std::log(quantity.least);
    const double position = static_cast<double>(random_()) / 4294967296.0;
    return static_cast<float>(std::exp(least + position * (std::log(quantity.most) - least)));
}

namespace {

class Kinds {
public:
    void add(std::vector<float> values)
    {
        if (!values.empty()) {
            kinds_.push_back(std::move(values));
        }
    }
    /// One kind of all that `values_of` finds in the items.
    template <class Items, class ValuesOf>
    void add_of_each(const Items& items, ValuesOf values_of)
    {
        std::vector<float> all;
        for (const auto& item : items) {
            const auto values = values_of(item);
            all.insert(all.end(), std::begin(values), std::end(values));
        }
        add(std::move(all));
    }
    std::vector<std::vector<float>> take() { return std::move(kinds_); }

private:
    std::vector<std::vector<float>> kinds_;
};

} // namespace

std::vector<std::vector<float>> reals_of(const Model& model)
{
    Kinds kinds;
    for (auto column :
         {&Segment::volume, &Segment::velocity_multiplier, &Segment::velocity_exponent, &Segment::depth_multiplier,
          &Segment::depth_exponent, &Segment::slope, &Segment::length, &Segment::width, &Segment::roughness,
          &Segment::minimum_depth, &Segment::initial_surface_elevation, &Segment::bottom_elevation,
          &Segment::side_slope, &Segment::initial_depth, &Segment::weir_height}) {
        kinds.add_of_each(model.segments, [column](const Segment& segment) { return std::array{segment.*column}; });
    }
    for (const FlowField& field : model.flow_fields) {
        kinds.add_of_each(field.functions, [](const FlowFunction& function) { return function.series.values; });
        kinds.add_of_each(field.functions, [](const FlowFunction& function) { return function.series.times; });
    }
    for (const ExchangeField& field : model.exchange_fields) {
        kinds.add_of_each(field.functions, [](const ExchangeFunction& function) { return function.series.values; });
        for (const ExchangeFunction& function : field.functions) {
            kinds.add_of_each(function.pairs, [](const ExchangePair& pair) { return std::array{pair.area}; });
            kinds.add_of_each(function.pairs, [](const ExchangePair& pair) { return std::array{pair.length}; });
        }
    }
    for (const System& system : model.systems) {
        kinds.add_of_each(system.boundaries.items, [](const SegmentSeries& item) { return item.series.values; });
        kinds.add_of_each(system.loads.items, [](const SegmentSeries& item) { return item.series.values; });
        kinds.add_of_each(system.initial_conditions, [](const InitialCondition& initial) {
            return std::array{initial.concentration, initial.dissolved_fraction};
        });
    }
    for (const auto& type : model.time_function_types) {
        kinds.add_of_each(type.instances, [](const TimeFunction& function) { return function.series.values; });
    }
    for (const auto& type : model.parameter_types) {
        kinds.add_of_each(type.instances, [](const Parameter& parameter) { return parameter.values; });
    }
    kinds.add_of_each(model.constant_types, [](const InstanceType<Constant>& type) {
        std::vector<float> values;
        for (const Constant& constant : type.instances) {
            values.push_back(constant.value);
        }
        return values;
    });
    return kinds.take();
}

std::vector<float> mixed_values(const std::vector<std::vector<float>>& kinds, std::size_t count)
{
    constexpr std::array quantities{volume, length, depth, flow, concentration, load, fraction};
    ModelValues values(1);
    std::vector<float> mixed(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::vector<float>& kind = kinds[values.below(kinds.size())];
        mixed[i] =
            i % 2 == 0 ? kind[values.below(kind.size())] : values.draw(quantities[values.below(quantities.size())]);
    }
    return mixed;
}

} // namespace velm::bench
