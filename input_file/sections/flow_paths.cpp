#include "input_file/fields/text_content.hpp"
#include "input_file/records/records.hpp"
#include "input_file/sections/sections.hpp"

#include <string>

namespace velm {
namespace {

constexpr std::int32_t flows_from_hydrodynamic_file = 3;

bool hydrodynamic_file_follows(RecordReader& in, const Model& model)
{
    if (!in.segments) { // the segment section was lost
        return !in.is_ahead(records::number_of_flow_functions);
    }
    return !model.segments.empty() && model.segments.front().flow_option == flows_from_hydrodynamic_file;
}

void read_function(RecordReader& in, std::int32_t field, std::int32_t number, FlowFunction& function)
{
    in.key(field, number);
    in.record(records::flow_function);
    function.description = text_as_served(in.text("description"));
    const Count paths = in.count(records::number_of_flow_paths);
    for (std::int32_t path = 1; in.goes_on(paths, path, records::flow_path); ++path) {
        in.key(field, number, path);
        in.record_into<records::flow_path>(function.paths.emplace_back());
    }
}

} // namespace

void read_flow_paths(RecordReader& in, Model& model)
{
    const std::string heading = "     Flow Field ";
    in.record(records::banners[2]);
    in.record(records::flow_pathways);
    const Count fields = in.count(records::number_of_flow_path_fields);
    for (std::int32_t field = 1; in.goes_on(fields, field, heading); ++field) {
        in.known_record("heading of the flow field", heading + "  " + std::to_string(field));
        if (field == 1 && hydrodynamic_file_follows(in, model)) {
            in.key(1);
            in.record(records::hydrodynamic_file);
            model.hydrodynamic_file = text_as_served(in.text("hydrodynamic_file"));
        }
        std::vector<FlowFunction>& functions = model.flow_fields.emplace_back().functions;
        const Count count = in.count(records::number_of_flow_functions);
        for (std::int32_t number = 1; in.goes_on(count, number, records::flow_function); ++number) {
            read_function(in, field, number, functions.emplace_back());
        }
    }
    in.flow_fields = static_cast<std::int32_t>(model.flow_fields.size());
}

} // namespace velm
