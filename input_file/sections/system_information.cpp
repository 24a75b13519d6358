#include "input_file/fields/text_content.hpp"
#include "input_file/records/records.hpp"
#include "input_file/sections/sections.hpp"

namespace velm {

void read_system_information(RecordReader& in, Model& model)
{
    constexpr std::int32_t version = 3;
    in.key(1);
    in.record_into<records::module_type>(model);
    in.repeated("version", version);
    in.record(records::banners[0]);
    in.record_into<records::start_date_and_time, records::skip_date_and_time, records::julian_end_time>(model);
    const Count systems = in.count(records::number_of_systems);
    in.deliver_count({"system", {}, {}}, systems);
    in.record_into<records::mass_balance_table_output, records::solution_technique, records::negative_solution,
                   records::restart, records::time_optimization, records::water_quality_linkage, records::topt_factor,
                   records::time_steps, records::print_interval>(model);
    for (std::int32_t number = 1; in.goes_on(systems, number, records::system); ++number) {
        in.key(number);
        in.record(records::system);
        System& system = model.systems.emplace_back();
        system.tag = text_as_served(in.text("tag"));
        system.name = in.name("name", &in.system_names.emplace_back());
    }
    in.systems = static_cast<std::int32_t>(model.systems.size());
}

} // namespace velm
