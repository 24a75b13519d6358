#include "headless_host/headless_host.hpp"

#include <algorithm>

namespace velm {

namespace {

using Requests = std::uint64_t;

constexpr Requests output_file_name = 1;
constexpr Requests version_panel = 25;
constexpr Requests announcement = 2; ///< also the completion message
constexpr Requests factors = 2;      ///< a scale factor and a conversion factor

template <class Items, class Count>
Requests sum(const Items& items, Count requests_of)
{
    Requests total = 0;
    for (const auto& item : items) {
        total += requests_of(item);
    }
    return total;
}

Requests system_information(const Model& model)
{
    constexpr Requests options = 17;
    constexpr Requests progress = 1;
    return announcement + options + model.systems.size() + progress;
}

Requests segments(const Model& model)
{
    constexpr Requests options = 5;
    constexpr Requests name_and_geometry = 1 + 19;
    return announcement + options + model.segments.size() * name_and_geometry;
}

Requests flow_paths(const Model& model)
{
    const bool has_hydrodynamic_file =
        !model.flow_fields.empty() && !model.segments.empty() && model.segments.front().flow_option == 3;
    return announcement + 1 + (has_hydrodynamic_file ? 1 : 0) + sum(model.flow_fields, [](const FlowField& field) {
               return 1 + sum(field.functions, [](const FlowFunction& function) { // path count and description
                          return 2 + 3 * function.paths.size();
                      });
           });
}

Requests flows(const Model& model)
{
    return announcement + 1 + sum(model.flow_fields, [](const FlowField& field) {
               return 1 + (field.functions.empty() ? 0 : factors) + sum(field.functions, [](const auto& function) {
                          return 2 + function.series.times.size(); // description and pair count, then the pairs
                      });
           });
}

Requests dispersive_exchanges(const Model& model)
{
    return announcement + 1 + sum(model.exchange_fields, [](const ExchangeField& field) {
               return 1 + (field.functions.empty() ? 0 : factors) + sum(field.functions, [](const auto& function) {
                          return 3 + 4 * function.pairs.size() + function.series.times.size();
                      });
           });
}

/// The boundaries or the loads of a system; for each of them its segment, its pair count and the whole series.
Requests segment_series(const SegmentSeriesSet& set)
{
    return 1 + (set.items.empty() ? 0 : factors) + 3 * set.items.size();
}

Requests boundaries(const Model& model)
{
    return sum(model.systems, [](const System& system) { return segment_series(system.boundaries); });
}

Requests loads(const Model& model)
{
    return announcement + 1 + (model.nps_option > 0 ? 1 : 0) +
           sum(model.systems, [](const System& system) { return segment_series(system.loads); });
}

/// The number of types, then two passes that ask each type's ISC number and count, and of each of its
/// instances, at least `least_instances`, whether it is used.
template <class Types>
Requests two_passes(const Types& types, std::size_t least_instances)
{
    return 1 + sum(types, [&](const auto& type) { return 2 * (2 + std::max(type.instances.size(), least_instances)); });
}

template <class Types, class Count>
Requests sum_of_used(const Types& types, Count requests_of)
{
    return sum(types, [&](const auto& type) {
        return sum(type.instances, [&](const auto& instance) { return instance.used ? requests_of(instance) : 0; });
    });
}

Requests time_functions(const Model& model)
{
    return announcement + two_passes(model.time_function_types, 1) +
           sum_of_used(model.time_function_types, [](const TimeFunction& function) -> Requests {
               return 2 + function.series.times.size(); // description and pair count, then the pairs
           });
}

Requests segment_parameters(const Model& model)
{
    const Requests instances = sum(model.parameter_types, [](const auto& type) { return type.instances.size(); });
    const Requests used = sum_of_used(model.parameter_types, [](const Parameter&) -> Requests { return 1; });
    const Requests assignments = model.segments.size() * (instances + used);
    constexpr Requests description_and_scale = 2;
    return announcement + two_passes(model.parameter_types, 0) + description_and_scale * used + assignments;
}

Requests constants(const Model& model)
{
    return announcement + two_passes(model.constant_types, 0) +
           sum_of_used(model.constant_types, [](const Constant&) -> Requests { return 2; });
}

Requests initial_conditions(const Model& model)
{
    return announcement + model.systems.size() * (3 + 2 * model.segments.size());
}

} // namespace

std::uint64_t requests_of_an_export(const Model& model)
{
    return output_file_name + version_panel + system_information(model) + segments(model) + flow_paths(model) +
           flows(model) + dispersive_exchanges(model) + boundaries(model) + loads(model) + time_functions(model) +
           segment_parameters(model) + constants(model) + initial_conditions(model) + announcement;
}

} // namespace velm
