#include "model_store/load_parts.hpp"

#include <map>
#include <string>
#include <utility>

namespace velm {

namespace {

template <class Instance>
void load_type_table(LoadState& load, std::string_view table, std::vector<InstanceType<Instance>>& types,
                     ParentKeys& keys)
{
    std::map<std::int32_t, std::string> taken;
    TableReader row(load, table, nullptr, &keys);
    while (row.next()) {
        const std::int32_t isc = row.integer("isc");
        const auto [holder, is_new] = taken.try_emplace(isc, row.row_in_words());
        if (!is_new) {
            row.report("isc", std::to_string(isc), "is also the ISC number of " + holder->second,
                       "give each type its own");
        }
        if (load.sound()) {
            types.push_back({isc, {}});
        }
    }
}

} // namespace

void load_time_functions(LoadState& load, Model& model)
{
    constexpr std::size_t longest_description = 80;
    ParentKeys types;
    ParentKeys functions;
    load_type_table(load, "time_function_type", model.time_function_types, types);
    TableReader row(load, "time_function", &types, &functions);
    while (row.next()) {
        TimeFunction function;
        function.used = row.flag("used");
        function.description = row.text("description", longest_description);
        if (load.sound()) {
            model.time_function_types[row.place(0)].instances.push_back(std::move(function));
        }
    }
    load_series(load, "time_function_value", functions, [&](const TableReader& pair) -> TimeSeries& {
        return model.time_function_types[pair.place(0)].instances[pair.place(1)].series;
    });
}

void load_parameters(LoadState& load, Model& model)
{
    constexpr std::size_t longest_description = 60;
    ParentKeys types;
    ParentKeys parameters;
    load_type_table(load, "parameter_type", model.parameter_types, types);
    TableReader row(load, "parameter", &types, &parameters);
    while (row.next()) {
        Parameter parameter;
        parameter.used = row.flag("used");
        parameter.description = row.text("description", longest_description);
        parameter.scale_factor = row.real("scale_factor");
        if (load.sound()) {
            model.parameter_types[row.place(0)].instances.push_back(std::move(parameter));
        }
    }
    load_for_each_segment(load, "parameter_value", parameters, [&](TableReader& value_row) {
        const float value = value_row.real("value");
        if (load.sound()) {
            std::vector<float>& values = model.parameter_types[value_row.place(0)].instances[value_row.place(1)].values;
            if (values.empty()) {
                values.reserve(load.segments.all().size());
            }
            values.push_back(value);
        }
    });
}

void load_constants(LoadState& load, Model& model)
{
    constexpr std::size_t longest_description = 60;
    ParentKeys types;
    load_type_table(load, "constant_type", model.constant_types, types);
    TableReader row(load, "constant", &types);
    while (row.next()) {
        Constant constant;
        constant.used = row.flag("used");
        constant.description = row.text("description", longest_description);
        constant.value = row.real("value");
        if (load.sound()) {
            model.constant_types[row.place(0)].instances.push_back(std::move(constant));
        }
    }
}

} // namespace velm
