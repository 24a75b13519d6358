#include "input_file/fields/text_content.hpp"
#include "input_file/form_rules.hpp"
#include "input_file/records/records.hpp"
#include "input_file/sections/sections.hpp"

#include <utility>

namespace velm {
namespace {

System read_system(RecordReader& in)
{
    System system;
    in.record(records::system);
    system.tag = text_as_served(in.text("tag"));
    const std::string_view field = in.text("name");
    in.system_names.emplace_back(field);
    if (std::optional<std::string> name = text_before_nul(field)) {
        system.name = *std::move(name);
    } else {
        in.report(form_rules::dropped_nul, "name", "is a name without a NUL after it", "one NUL, then blanks");
        system.name = text_as_served(field);
    }
    return system;
}

} // namespace

void read_system_information(RecordReader& in, Model& model)
{
    constexpr std::int32_t version = 3;
    in.key(1);
    in.record(records::module_type);
    model.model_type = in.integer("model_type");
    in.repeated("version", version);
    in.record(records::banners[0]);
    in.record(records::start_date_and_time);
    model.start_date = {in.integer("start_date_1"), in.integer("start_date_2"), in.integer("start_date_3")};
    model.start_time = {in.integer("start_time_1"), in.integer("start_time_2"), in.integer("start_time_3")};
    in.record(records::skip_date_and_time);
    model.skip_date = {in.integer("skip_date_1"), in.integer("skip_date_2"), in.integer("skip_date_3")};
    model.skip_time = {in.integer("skip_time_1"), in.integer("skip_time_2"), in.integer("skip_time_3")};
    in.record(records::julian_end_time);
    model.julian_end_time = in.real("julian_end_time");
    const Count systems = in.count(records::number_of_systems);
    in.deliver_count({"system", {}, {}}, systems);
    in.record(records::mass_balance_table_output);
    model.mass_balance_table_output = in.integer("mass_balance_table_output");
    in.record(records::solution_technique);
    model.solution_technique = in.integer("solution_technique");
    in.record(records::negative_solution);
    model.negative_solution = in.integer("negative_solution");
    in.record(records::restart);
    model.restart = in.integer("restart");
    in.record(records::time_optimization);
    model.time_optimization = in.integer("time_optimization");
    in.record(records::water_quality_linkage);
    model.water_quality_linkage = in.integer("water_quality_linkage");
    in.record(records::topt_factor);
    model.topt_factor = in.real("topt_factor");
    in.record(records::time_steps);
    model.minimum_time_step = in.real("minimum_time_step");
    model.maximum_time_step = in.real("maximum_time_step");
    in.record(records::print_interval);
    model.print_interval = in.real("print_interval");
    for (std::int32_t system = 1; in.goes_on(systems, system, records::system); ++system) {
        in.key(system);
        model.systems.push_back(read_system(in));
    }
    in.systems = static_cast<std::int32_t>(model.systems.size());
}

} // namespace velm
