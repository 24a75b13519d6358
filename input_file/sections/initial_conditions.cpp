#include "input_file/records/records.hpp"
#include "input_file/sections/sections.hpp"

namespace velm {
namespace {

void read_system(RecordReader& in, std::int32_t number, const Count& segments, System& system)
{
    constexpr std::size_t shown = 15;
    const auto place = static_cast<std::size_t>(number) - 1;
    in.record(records::initial_conditions_for_system);
    in.repeated("system number", number);
    if (place < in.system_names.size()) {
        in.repeated_text("system name", std::string_view(in.system_names[place]).substr(0, shown));
    }
    in.key(number);
    in.record_into<records::solids_transport_field, records::solids_density, records::maximum_concentration>(system);
    in.record(records::initial_condition_caption);
    for (std::int32_t segment = 1; in.goes_on(segments, segment, records::initial_condition); ++segment) {
        in.record(records::initial_condition);
        in.repeated("segment number", segment);
        in.key(number, segment);
        in.data<records::initial_condition>(system.initial_conditions.emplace_back());
    }
}

} // namespace

void read_initial_conditions(RecordReader& in, Model& model)
{
    in.record(records::banners[10]);
    const Count systems = in.repeated_count(records::repeated_number_of_systems, in.systems);
    const Count segments = in.repeated_count(records::repeated_number_of_segments, in.segments);
    for (std::int32_t number = 1; in.goes_on(systems, number, records::initial_conditions_for_system); ++number) {
        if (static_cast<std::size_t>(number) > model.systems.size()) {
            model.systems.emplace_back();
        }
        read_system(in, number, segments, model.systems[static_cast<std::size_t>(number) - 1]);
    }
}

} // namespace velm
