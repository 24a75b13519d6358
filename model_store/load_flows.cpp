#include "model_store/load_parts.hpp"

#include <utility>

namespace velm {

namespace {

void load_fields(LoadState& load, Model& model, ParentKeys& fields)
{
    TableReader row(load, "flow_field", nullptr, &fields);
    while (row.next()) {
        FlowField field;
        field.scale_factor = row.real("scale_factor");
        field.conversion_factor = row.real("conversion_factor");
        if (load.sound()) {
            model.flow_fields.push_back(std::move(field));
        }
    }
}

void load_functions(LoadState& load, Model& model, const ParentKeys& fields, ParentKeys& functions)
{
    constexpr std::size_t longest_description = 80;
    TableReader row(load, "flow_function", &fields, &functions);
    while (row.next()) {
        FlowFunction function;
        function.description = row.text("description", longest_description);
        if (load.sound()) {
            model.flow_fields[row.place(0)].functions.push_back(std::move(function));
        }
    }
}

void load_paths(LoadState& load, Model& model, const ParentKeys& functions)
{
    TableReader row(load, "flow_path", &functions);
    while (row.next()) {
        FlowPath path;
        path.first_segment = row.segment_or_outside("first_segment");
        path.second_segment = row.segment_or_outside("second_segment");
        path.fraction = row.real("fraction");
        if (load.sound()) {
            model.flow_fields[row.place(0)].functions[row.place(1)].paths.push_back(path);
        }
    }
}

} // namespace

void load_flows(LoadState& load, Model& model)
{
    ParentKeys fields;
    ParentKeys functions;
    load_fields(load, model, fields);
    load_functions(load, model, fields, functions);
    load_paths(load, model, functions);
    load_series(load, "flow_value", functions, [&](const TableReader& pair) -> TimeSeries& {
        return model.flow_fields[pair.place(0)].functions[pair.place(1)].series;
    });
}

} // namespace velm
