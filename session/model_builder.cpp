#include "session/model_builder.hpp"

#include "headless_host/key_columns.hpp"
#include "headless_host/request.hpp"

#include <algorithm>
#include <span>
#include <string>
#include <utility>

namespace velm {
namespace {

using Exchange = RecordedExchange;

/// The item with the number that stands in an argument; it may be the next after those that there are.
template <class Item>
Item& item(std::vector<Item>& items, const Exchange& exchange, std::size_t argument)
{
    const std::int64_t number = exchange.integer(argument);
    if (number < 1 || static_cast<std::uint64_t>(number) > items.size() + 1) {
        throw Misplaced(std::string(exchange.key().arguments[argument].meaning) + " " + std::to_string(number) +
                        " is asked for where " + std::to_string(items.size() + 1) + " would be the next");
    }
    if (static_cast<std::size_t>(number) == items.size() + 1) {
        items.emplace_back();
    }
    return items[static_cast<std::size_t>(number) - 1];
}

template <class Instance>
InstanceType<Instance>& type_of(std::vector<InstanceType<Instance>>& types, std::int32_t isc)
{
    const auto found = std::ranges::find(types, isc, &InstanceType<Instance>::isc);
    if (found == types.end()) {
        throw Misplaced("no type of that ISC number has been named");
    }
    return *found;
}

/// Goes to the items that an exchange names.
struct Step {
    const Exchange& exchange;
    const KeyColumns& key;

    auto& operator()(auto& items, std::size_t level) const { return item(items, exchange, key.number_value(level)); }
    auto& type(auto& types) const { return type_of(types, exchange.integer(0)); }
};

template <class Number>
void assign(Number& datum, const std::string& answer)
{
    datum = number_at<Number>(answer);
}
void assign(bool& datum, const std::string& answer)
{
    datum = number_at<std::int32_t>(answer) >= 1;
}
/// Without the blanks at its end, which a host adds again; a NUL is part of the text.
void assign(std::string& datum, const std::string& answer)
{
    datum = answer.substr(0, answer.find_last_not_of(' ') + 1);
}

void take_pairs(TimeSeries& series, const Exchange& exchange, std::size_t argument)
{
    if (exchange.key().arguments[argument].kind == Kind::series) {
        series = {exchange.series(argument), exchange.series(argument + 1)};
    } else {
        item(series.times, exchange, argument - 1) = exchange.real(argument);
        item(series.values, exchange, argument - 1) = exchange.real(argument + 1);
    }
}

} // namespace

void ModelBuilder::take(const RecordedExchange& exchange)
{
    const KeyColumns& key = key_columns[static_cast<std::size_t>(exchange.key_position)];
    const Step step{exchange, key};
    switch (exchange.key_position) {
    case "GTFISUSED"_key: return take_time_function_used(exchange);
    case "GNUMTIMEFUNC"_key: time_function_count_ = exchange.integer(1); break;
    case "GNINQ"_key:
    case "GNOQS"_key:
    case "GNTEX"_key: // the count is not kept, but what has the items comes into being
        return with_list(key.table, model_, step, [](const auto&...) {});
    case "GNFIELD"_key: ++passes_over_flow_fields_; break;
    case "GFLOWFUNCDESC"_key: // the first pass writes all of it, the second its beginning
        if (passes_over_flow_fields_ > 1) {
            return;
        }
        break;
    case "GCONSTPARAM"_key: {
        auto& parameters = type_of(model_.parameter_types, exchange.integer(1)).instances;
        item(item(parameters, exchange, 2).values, exchange, 0) = exchange.real(3);
        return;
    }
    default: break;
    }
    if (key.asked != Asked::columns && key.asked != Asked::pairs) {
        return; // other counts, the panel, progress and the output file name
    }
    with_item(key.table, model_, step, [&](const auto& table, auto& datum_item) {
        for (const auto& column : std::span(table.columns).subspan(key.first, key.count)) {
            with_value(column, datum_item, [&](auto& datum) { assign(datum, exchange.values[key.value_of(column)]); });
        }
        if constexpr (requires { datum_item.series; }) {
            if (key.asked == Asked::pairs) {
                take_pairs(datum_item.series, exchange, key.first_value);
            }
        }
    });
}

/// The plug-in takes a type without time functions for a type with one, and asks whether that one is used.
void ModelBuilder::take_time_function_used(const RecordedExchange& exchange)
{
    const bool used = exchange.integer(2) == 1;
    if (used || time_function_count_ != 0) {
        auto& type = type_of(model_.time_function_types, exchange.integer(0));
        item(type.instances, exchange, 1).used = used;
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
