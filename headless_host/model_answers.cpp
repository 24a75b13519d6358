#include "headless_host/model_answers.hpp"

#include "headless_host/key_columns.hpp"

#include <algorithm>
#include <limits>
#include <span>

namespace velm {

namespace {

template <class Instance>
auto by_isc(const std::vector<InstanceType<Instance>>& types)
{
    std::unordered_map<std::int32_t, const InstanceType<Instance>*> map;
    for (const InstanceType<Instance>& type : types) {
        map.emplace(type.isc, &type);
    }
    return map;
}

void put_count(const Request& request, std::size_t argument, const auto& items)
{
    constexpr std::size_t most = std::numeric_limits<std::int32_t>::max();
    request.put(argument, static_cast<std::int32_t>(std::min(items.size(), most)));
}

void put_pairs(const Request& request, std::size_t argument, const TimeSeries& series)
{
    if (host_keys[request.key_position()].arguments[argument].kind == Kind::series) {
        request.put_series(argument, series.times);
        request.put_series(argument + 1, series.values);
    } else {
        request.put(argument, request.pick(series.times, argument - 1));
        request.put(argument + 1, request.pick(series.values, argument - 1));
    }
}

} // namespace

ModelAnswers::ModelAnswers(const Model& model)
    : model_(model),
      types_(by_isc(model.time_function_types), by_isc(model.parameter_types), by_isc(model.constant_types))
{
}

/// Goes to the items that a request names.
struct ModelAnswers::Step {
    const ModelAnswers& answers;
    const Request& request;
    const KeyColumns& key;

    const auto& operator()(const auto& items, std::size_t level) const
    {
        return request.pick(items, key.number_value(level));
    }
    template <class Instance>
    [[nodiscard]] const auto& type(const std::vector<InstanceType<Instance>>& /*types*/,
                                   std::size_t isc_argument = 0) const
    {
        const auto& types = std::get<TypesByIsc<Instance>>(answers.types_);
        const auto found = types.find(request.integer(isc_argument));
        if (found == types.end()) {
            request.unanswerable("the model has no type of that ISC number");
        }
        return *found->second;
    }
};

void ModelAnswers::answer(const Request& request) const
{
    const KeyColumns& key = key_columns[static_cast<std::size_t>(request.key_position())];
    const Step step{*this, request, key};
    if (request.key_position() == "GCONSTPARAM"_key) {
        const auto& parameters = step.type(model_.parameter_types, 1).instances;
        return request.put(3, request.pick(request.pick(parameters, 2).values, 0));
    }
    // the plug-in takes a type without time functions for a type with one, and asks whether that one is used
    if (request.key_position() == "GTFISUSED"_key && request.integer(1) == 1 &&
        step.type(model_.time_function_types).instances.empty()) {
        return request.put(2, 0);
    }
    if (key.asked == Asked::something_else) {
        request.unanswerable("no model answers this key");
    }
    if (key.asked == Asked::number_of_items) {
        return with_list(key.table, model_, step, [&](const auto& /*table*/, const auto& list, std::size_t /*level*/) {
            put_count(request, key.first_value, list);
        });
    }
    with_item(key.table, model_, step, [&](const auto& table, const auto& item) {
        for (const auto& column : std::span(table.columns).subspan(key.first, key.count)) {
            with_value(column, item, [&](const auto& value) { request.put(key.value_of(column), value); });
        }
        if constexpr (requires { item.series; }) {
            if (key.asked == Asked::number_of_pairs) {
                put_count(request, key.first_value, item.series.times);
            } else if (key.asked == Asked::pairs) {
                put_pairs(request, key.first_value, item.series);
            }
        }
    });
}

} // namespace velm
