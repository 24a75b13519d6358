#include "input_file/fields/field_name.hpp"
#include "input_file/fields/text_content.hpp"
#include "input_file/records/records.hpp"
#include "input_file/sections/sections.hpp"

#include <array>
#include <string>

namespace velm {
namespace {

constexpr std::array<std::string_view, 6> field_names{
    "Surface Water Flow Field", "Porewater Flow Field", "Solids - 1", "Solids - 2", "Solids - 3",
    "Evap/Precip Flow Field"};

/// Only the beginning of the description stands here; all of it stands with the flow paths.
void read_description(RecordReader& in, FlowFunction& function)
{
    constexpr std::size_t shown = 30;
    in.record(records::inflow);
    if (in.flow_fields) {
        std::string beginning = function.description;
        beginning.resize(shown, ' ');
        in.repeated_text("description", beginning);
    } else {
        function.description = text_as_served(in.text("description"));
    }
}

void read_functions(RecordReader& in, std::int32_t field_number, const Count& functions, FlowField& field)
{
    for (std::int32_t number = 1; in.goes_on(functions, number, records::inflow); ++number) {
        if (static_cast<std::size_t>(number) > field.functions.size()) {
            field.functions.emplace_back();
        }
        FlowFunction& function = field.functions[static_cast<std::size_t>(number) - 1];
        read_description(in, function);
        const Count pairs = in.count(records::number_of_time_pairs);
        in.key(field_number, number);
        in.time_pairs(pairs, records::flow_value, function.series);
    }
}

} // namespace

void read_flow_series(RecordReader& in, Model& model)
{
    in.record(records::banners[3]);
    const Count fields = in.repeated_count(records::number_of_flow_fields, in.flow_fields);
    for (std::int32_t number = 1; in.goes_on(fields, number, records::field_name); ++number) {
        if (static_cast<std::size_t>(number) > model.flow_fields.size()) {
            model.flow_fields.emplace_back();
        }
        FlowField& field = model.flow_fields[static_cast<std::size_t>(number) - 1];
        in.known_record("name of the flow field", field_name_line(field_names, "Flow Field", number));
        const auto known = static_cast<std::int32_t>(field.functions.size());
        const Count functions =
            in.repeated_count(records::number_of_inflows, in.flow_fields ? std::optional(known) : std::nullopt);
        if (in.any(functions, records::flow_factors)) {
            in.key(number);
            in.record_into<records::flow_factors>(field);
            read_functions(in, number, functions, field);
        }
    }
}

} // namespace velm
