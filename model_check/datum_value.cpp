#include "model_check/datum_value.hpp"

#include "model/item_columns.hpp"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

namespace velm {

namespace {

/// The item of that number, or none.
template <class Item>
const Item* at(const std::vector<Item>* items, std::int64_t number)
{
    return items != nullptr && number >= 1 && static_cast<std::size_t>(number) <= items->size()
               ? &(*items)[static_cast<std::size_t>(number - 1)]
               : nullptr;
}

/// A list that `owner` has, or none when there is no owner.
template <class Owner, class List>
const List* list_of(const Owner* owner, List Owner::*list)
{
    return owner == nullptr ? nullptr : &(owner->*list);
}

DatumValue pointer_to(const std::int32_t& value)
{
    return {.integer = &value, .real = nullptr, .text = nullptr};
}
DatumValue pointer_to(const float& value)
{
    return {.integer = nullptr, .real = &value, .text = nullptr};
}
DatumValue pointer_to(const std::string& value)
{
    return {.integer = nullptr, .real = nullptr, .text = &value};
}
DatumValue pointer_to(const bool& /*flag*/)
{
    return {};
}

template <class Item>
DatumValue column_of(const Item* item, std::string_view column)
{
    DatumValue found;
    if (item != nullptr) {
        visit_columns(
            [&](std::string_view name, const auto& value) {
                if (name == column) {
                    found = pointer_to(value);
                }
            },
            *item);
    }
    return found;
}

DatumValue element(const std::vector<float>* values, std::int64_t number)
{
    const float* const value = at(values, number);
    return value == nullptr ? DatumValue{} : pointer_to(*value);
}

/// A value of the series table whose owner is found.
template <class Owner>
DatumValue pair_of(const Owner* owner, const Address& address)
{
    if (owner == nullptr) {
        return {};
    }
    return element(address.column == "time" ? &owner->series.times : &owner->series.values, address.numbers[2]);
}

template <class Instance>
const Instance* instance(const std::vector<InstanceType<Instance>>& types, const Address& address)
{
    return at(list_of(at(&types, address.numbers[0]), &InstanceType<Instance>::instances), address.numbers[1]);
}

template <class Instance>
DatumValue isc_of(const std::vector<InstanceType<Instance>>& types, const Address& address)
{
    const auto* const type = at(&types, address.numbers[0]);
    return type == nullptr || address.column != "isc" ? DatumValue{} : pointer_to(type->isc);
}

const SegmentSeries* entry(const Model& model, SegmentSeriesSet System::*set, const Address& address)
{
    const System* const system = at(&model.systems, address.numbers[0]);
    return system == nullptr ? nullptr : at(&(system->*set).items, address.numbers[1]);
}

const FlowFunction* flow_function(const Model& model, const Address& address)
{
    return at(list_of(at(&model.flow_fields, address.numbers[0]), &FlowField::functions), address.numbers[1]);
}

const ExchangeFunction* exchange_function(const Model& model, const Address& address)
{
    return at(list_of(at(&model.exchange_fields, address.numbers[0]), &ExchangeField::functions), address.numbers[1]);
}

DatumValue value_in_series(const Model& model, const Address& address)
{
    switch (address.table.front()) {
    case 'b': return pair_of(entry(model, &System::boundaries, address), address);
    case 'l': return pair_of(entry(model, &System::loads, address), address);
    case 'f': return pair_of(flow_function(model, address), address);
    case 'e': return pair_of(exchange_function(model, address), address);
    case 't': return pair_of(instance(model.time_function_types, address), address);
    default: break;
    }
    const Parameter* const parameter = instance(model.parameter_types, address);
    return element(list_of(parameter, &Parameter::values), address.numbers[2]);
}

DatumValue value_of_type(const Model& model, const Address& address)
{
    switch (address.table.front()) {
    case 't': return isc_of(model.time_function_types, address);
    case 'p': return isc_of(model.parameter_types, address);
    default: return isc_of(model.constant_types, address);
    }
}

template <class Instance>
std::vector<std::int32_t> used_types(const std::vector<InstanceType<Instance>>& types)
{
    std::vector<std::int32_t> numbers;
    for (std::size_t place = 0; place < types.size(); ++place) {
        const auto& instances = types[place].instances;
        if (std::any_of(instances.begin(), instances.end(), [](const Instance& one) { return one.used; })) {
            numbers.push_back(static_cast<std::int32_t>(place + 1));
        }
    }
    return numbers;
}

} // namespace

ExportedTypes::ExportedTypes(const Model& model)
    : time_functions_(used_types(model.time_function_types)), parameters_(used_types(model.parameter_types)),
      constants_(used_types(model.constant_types))
{
}

Address ExportedTypes::in_model(Address in_file) const
{
    const std::vector<std::int32_t>* const types = in_file.table.starts_with("time_function") ? &time_functions_
                                                   : in_file.table.starts_with("parameter")   ? &parameters_
                                                   : in_file.table.starts_with("constant")    ? &constants_
                                                                                              : nullptr;
    if (types != nullptr) {
        const std::int32_t* const number = at(types, in_file.numbers[0]);
        in_file.numbers[0] = number == nullptr ? 0 : *number;
    }
    return in_file;
}

DatumValue value_of(const Model& model, const Address& address)
{
    const auto& [table, column, key] = address;
    if (table.ends_with("_value")) { // most of a file
        return value_in_series(model, address);
    }
    if (table.ends_with("_type")) {
        return value_of_type(model, address);
    }
    if (table == "model") {
        return column_of(&model, column);
    }
    if (table == "system") {
        return column_of(at(&model.systems, key[0]), column);
    }
    if (table == "segment") {
        return column_of(at(&model.segments, key[0]), column);
    }
    if (table == "initial_condition") {
        return column_of(at(list_of(at(&model.systems, key[0]), &System::initial_conditions), key[1]), column);
    }
    if (table == "flow_field") {
        return column_of(at(&model.flow_fields, key[0]), column);
    }
    if (table == "flow_function") {
        return column_of(flow_function(model, address), column);
    }
    if (table == "flow_path") {
        return column_of(at(list_of(flow_function(model, address), &FlowFunction::paths), key[2]), column);
    }
    if (table == "exchange_field") {
        return column_of(at(&model.exchange_fields, key[0]), column);
    }
    if (table == "exchange_function") {
        return column_of(exchange_function(model, address), column);
    }
    if (table == "exchange_pair") {
        return column_of(at(list_of(exchange_function(model, address), &ExchangeFunction::pairs), key[2]), column);
    }
    if (table == "boundary") {
        return column_of(entry(model, &System::boundaries, address), column);
    }
    if (table == "load") {
        return column_of(entry(model, &System::loads, address), column);
    }
    if (table == "time_function") {
        return column_of(instance(model.time_function_types, address), column);
    }
    if (table == "parameter") {
        return column_of(instance(model.parameter_types, address), column);
    }
    return column_of(instance(model.constant_types, address), column);
}

} // namespace velm
