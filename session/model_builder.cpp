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
    const std::int64_t number = exchange.values[argument].integer;
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
    auto& type(auto& types) const { return type_of(types, exchange.values[0].integer); }
};

void assign(std::int32_t& datum, const RecordedValue& answer)
{
    datum = answer.integer;
}
void assign(float& datum, const RecordedValue& answer)
{
    datum = answer.real;
}
void assign(bool& datum, const RecordedValue& answer)
{
    datum = answer.integer >= 1;
}
/// Without the blanks at its end, which a host adds again; a NUL is part of the text.
void assign(std::string& datum, const RecordedValue& answer)
{
    datum = answer.text.substr(0, answer.text.find_last_not_of(' ') + 1);
}

void take_time_pair(TimeSeries& series, const Exchange& exchange)
{
    item(series.times, exchange, 2) = exchange.values[3].real;
    item(series.values, exchange, 2) = exchange.values[4].real;
}

void take_series(TimeSeries& series, const Exchange& exchange)
{
    series.times = exchange.values[2].series;
    series.values = exchange.values[3].series;
}

} // namespace

void ModelBuilder::take(const RecordedExchange& exchange)
{
    const KeyColumns& key = key_columns[static_cast<std::size_t>(exchange.key_position)];
    if (key.count == 0) {
        return take_without_column(exchange);
    }
    switch (exchange.key_position) {
    case "GTFISUSED"_key: return take_time_function_used(exchange);
    case "GFLOWFUNCDESC"_key: // the first pass writes all of it, the second its beginning
        if (passes_over_flow_fields_ > 1) {
            return;
        }
        break;
    default: break;
    }
    with_item(key.table, model_, Step{exchange, key}, [&](const auto& table, auto& datum_item) {
        for (const auto& column : std::span(table.columns).subspan(key.first, key.count)) {
            with_value(column, datum_item, [&](auto& datum) { assign(datum, exchange.values[key.value_of(column)]); });
        }
    });
}

/// What has been named comes into being; of counts nothing is kept.
void ModelBuilder::take_without_column(const RecordedExchange& e)
{
    Model& m = model_;
    const auto system = [&]() -> auto&
    {
        return item(m.systems, e, 0);
    };
    const auto flow_function = [&]() -> auto&
    {
        return item(item(m.flow_fields, e, 0).functions, e, 1);
    };
    const auto exchange_function = [&]() -> auto&
    {
        return item(item(m.exchange_fields, e, 0).functions, e, 1);
    };
    const auto instance = [&](auto& types, std::size_t isc) -> auto&
    {
        return item(type_of(types, e.values[isc].integer).instances, e, isc + 1);
    };
    switch (e.key_position) {
    case "GNFIELD"_key: ++passes_over_flow_fields_; break;
    case "GNINQ"_key: (void)item(m.flow_fields, e, 0); break;
    case "GNOQS"_key: (void)flow_function(); break;
    case "GNOQFUNC"_key: take_time_pair(flow_function().series, e); break;
    case "GNTEX"_key: (void)item(m.exchange_fields, e, 0); break;
    case "GNORFUNC"_key: take_time_pair(exchange_function().series, e); break;
    case "GALLBOUNDFUNC"_key: take_series(item(system().boundaries.items, e, 1).series, e); break;
    case "GALLLOADFUNC"_key: take_series(item(system().loads.items, e, 1).series, e); break;
    case "GNUMTIMEFUNC"_key: time_function_count_ = e.values[1].integer; break;
    case "GBRKTF"_key: take_time_pair(instance(m.time_function_types, 0).series, e); break;
    case "GCONSTPARAM"_key: item(instance(m.parameter_types, 1).values, e, 0) = e.values[3].real; break;
    default: break; // other counts, the panel, progress and the output file name
    }
}

/// The plug-in takes a type without time functions for a type with one, and asks whether that one is used.
void ModelBuilder::take_time_function_used(const RecordedExchange& exchange)
{
    const bool used = exchange.values[2].integer == 1;
    if (used || time_function_count_ != 0) {
        auto& type = type_of(model_.time_function_types, exchange.values[0].integer);
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
