#include "model_check/datum_value.hpp"

#include "model/items.hpp"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace velm {

namespace {

/// Thrown where a number is of no item.
struct NoItem {};

/// Goes to the items that an address names.
struct StepTo {
    const RowNumbers& numbers;

    auto& operator()(auto& list, std::size_t level) const
    {
        const std::int64_t number = numbers.at(level);
        if (number < 1 || static_cast<std::size_t>(number) > list.size()) {
            throw NoItem();
        }
        return list[static_cast<std::size_t>(number - 1)];
    }
    auto& type(auto& list) const { return (*this)(list, 0); }
};

void point_to(DatumValue& found, std::int32_t& value)
{
    found.integer = &value;
}
void point_to(DatumValue& found, float& value)
{
    found.real = &value;
}
void point_to(DatumValue& found, std::string& value)
{
    found.text = &value;
}
void point_to(DatumValue& /*found*/, bool& /*flag*/) {}

std::optional<TableId> table_of(std::string_view name)
{
    std::optional<TableId> found;
    for_each_table([&](TableId id, const auto& table) {
        if (table.name == name) {
            found = id;
        }
    });
    return found;
}

/// A value of the series or of the parameter that owns the row.
DatumValue value_in_row(Model& model, const Address& address)
{
    const StepTo step{address.numbers};
    DatumValue found;
    const auto point = [&](const auto& /*table*/, auto& item) {
        if constexpr (requires { item.series; }) {
            point_to(found, step(address.column == "time" ? item.series.times : item.series.values, 2));
        } else if constexpr (requires { item.values; }) {
            point_to(found, step(item.values, 2));
        }
    };
    const auto* const series = std::ranges::find(series_tables, address.table, &SeriesTable::name);
    if (series != series_tables.end() || address.table == "parameter_value") {
        with_item(series != series_tables.end() ? series->owner : TableId::parameter, model, step, point);
    }
    return found;
}

DatumValue value_in_column(Model& model, const Address& address)
{
    DatumValue found;
    if (const std::optional<TableId> table = table_of(address.table)) {
        with_item(*table, model, StepTo{address.numbers}, [&](const auto& columns, auto& item) {
            for (const auto& column : columns.columns) {
                if (column.name == address.column) {
                    with_value(column, item, [&](auto& value) { point_to(found, value); });
                }
            }
        });
    }
    return found;
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
        const std::int64_t number = in_file.numbers[0];
        const bool known = number >= 1 && static_cast<std::size_t>(number) <= types->size();
        in_file.numbers[0] = known ? (*types)[static_cast<std::size_t>(number - 1)] : 0;
    }
    return in_file;
}

DatumValue value_of(Model& model, const Address& address)
{
    try {
        return address.table.ends_with("_value") ? value_in_row(model, address) : value_in_column(model, address);
    } catch (const NoItem&) {
        return {};
    }
}

} // namespace velm
