#include "input_file/fields/text_content.hpp"
#include "input_file/records/records.hpp"
#include "input_file/sections/instances.hpp"
#include "input_file/sections/sections.hpp"

namespace velm {
namespace {

void read_scale_factors(RecordReader& in, Model& model)
{
    const Count count = in.count(records::number_of_parameters);
    in.record(records::scale_factors);
    Instances parameters(model.parameter_types);
    for (std::int32_t number = 1; in.goes_on(count, number, records::parameter); ++number) {
        in.record(records::parameter);
        Parameter& parameter = parameters.enter(in);
        in.data<records::parameter>(parameter);
        parameter.description = text_as_served(in.text("description"));
    }
    in.refuse_more(count, records::parameter);
    if (!parameters.complete()) { // then nobody knows whose the values are
        throw SectionLost();
    }
}

/// The instances of one type for a segment; those that are not in use are not in the file.
void read_values(RecordReader& in, std::int32_t type_number, std::int32_t segment, InstanceType<Parameter>& type)
{
    for (std::int32_t number = 1; Parameter & parameter : type.instances) {
        float& value = parameter.values.emplace_back();
        if (parameter.used) {
            in.record(records::parameter_value);
            in.repeated("ISC number", type.isc);
            in.repeated("instance", number);
            in.key(type_number, number, segment);
            value = in.real("value");
        }
        ++number;
    }
}

} // namespace

void read_parameters(RecordReader& in, Model& model)
{
    in.record(records::banners[8]);
    const Count segments = in.repeated_count(records::number_of_segments, in.segments);
    read_scale_factors(in, model);
    in.record(records::segment_assignments);
    for (std::int32_t segment = 1; in.goes_on(segments, segment, records::assigned_segment); ++segment) {
        in.record(records::assigned_segment);
        in.repeated("segment number", segment);
        for (std::int32_t number = 1; InstanceType<Parameter> & type : model.parameter_types) {
            read_values(in, number++, segment, type);
        }
    }
}

} // namespace velm
