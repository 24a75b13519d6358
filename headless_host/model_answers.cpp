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

void put_count(const Request& request, const auto& items)
{
    constexpr std::size_t most = std::numeric_limits<std::int32_t>::max();
    const std::size_t last = host_keys[request.key_position()].argument_count - 1;
    request.put(last, static_cast<std::int32_t>(std::min(items.size(), most)));
}

void put_time_pair(const Request& request, const TimeSeries& series)
{
    request.put(3, request.pick(series.times, 2));
    request.put(4, request.pick(series.values, 2));
}

void put_all_time_pairs(const Request& request, const TimeSeries& series)
{
    request.put_series(2, series.times);
    request.put_series(3, series.values);
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
    const auto& type(const std::vector<InstanceType<Instance>>& /*types*/, std::size_t isc_argument = 0) const
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
    if (key.count == 0) {
        return answer_without_column(request, step);
    }
    // the plug-in takes a type without time functions for a type with one, and asks whether that one is used
    if (request.key_position() == "GTFISUSED"_key && request.integer(1) == 1 &&
        step.type(model_.time_function_types).instances.empty()) {
        return request.put(2, 0);
    }
    with_item(key.table, model_, step, [&](const auto& table, const auto& item) {
        for (const auto& column : std::span(table.columns).subspan(key.first, key.count)) {
            with_value(column, item, [&](const auto& value) { request.put(key.value_of(column), value); });
        }
    });
}

/// Counts, series and the values of parameters.
void ModelAnswers::answer_without_column(const Request& r, const Step& step) const
{
    const Model& m = model_;
    const auto system = [&]() -> auto&
    {
        return step(m.systems, 0);
    };
    const auto boundary = [&]() -> auto&
    {
        return step(system().boundaries.items, 1);
    };
    const auto load = [&]() -> auto&
    {
        return step(system().loads.items, 1);
    };
    const auto flow_function = [&]() -> auto&
    {
        return step(step(m.flow_fields, 0).functions, 1);
    };
    const auto exchange_function = [&]() -> auto&
    {
        return step(step(m.exchange_fields, 0).functions, 1);
    };
    const auto time_function = [&]() -> auto&
    {
        return step(step.type(m.time_function_types).instances, 1);
    };
    switch (r.key_position()) {
    case "GNUMSYS"_key: return put_count(r, m.systems);
    case "GNUMSEG"_key: return put_count(r, m.segments);
    case "GNFIELD"_key: return put_count(r, m.flow_fields);
    case "GNINQ"_key: return put_count(r, step(m.flow_fields, 0).functions);
    case "GNOQS"_key: return put_count(r, flow_function().paths);
    case "GNBRKQ"_key: return put_count(r, flow_function().series.times);
    case "GNOQFUNC"_key: return put_time_pair(r, flow_function().series);
    case "GNRFLD"_key: return put_count(r, m.exchange_fields);
    case "GNTEX"_key: return put_count(r, step(m.exchange_fields, 0).functions);
    case "GNORS"_key: return put_count(r, exchange_function().pairs);
    case "GNOBRKS"_key: return put_count(r, exchange_function().series.times);
    case "GNORFUNC"_key: return put_time_pair(r, exchange_function().series);
    case "GNOBC"_key: return put_count(r, system().boundaries.items);
    case "GNBFP"_key: return put_count(r, boundary().series.times);
    case "GALLBOUNDFUNC"_key: return put_all_time_pairs(r, boundary().series);
    case "GNOWK"_key: return put_count(r, system().loads.items);
    case "GNBWK"_key: return put_count(r, load().series.times);
    case "GALLLOADFUNC"_key: return put_all_time_pairs(r, load().series);
    case "GNUMTFTYPE"_key: return put_count(r, m.time_function_types);
    case "GNUMTIMEFUNC"_key: return put_count(r, step.type(m.time_function_types).instances);
    case "GNBRKTF"_key: return put_count(r, time_function().series.times);
    case "GBRKTF"_key: return put_time_pair(r, time_function().series);
    case "GNUMPARAMTYPE"_key: return put_count(r, m.parameter_types);
    case "GNUMPARAMBYISC"_key: return put_count(r, step.type(m.parameter_types).instances);
    case "GCONSTPARAM"_key: return r.put(3, r.pick(r.pick(step.type(m.parameter_types, 1).instances, 2).values, 0));
    case "GNUMCONST"_key: return put_count(r, m.constant_types);
    case "GNUMCONSTBYISC"_key: return put_count(r, step.type(m.constant_types).instances);
    default: r.unanswerable("no model answers this key");
    }
}

} // namespace velm
