#include "input_file/records/matching.hpp"

#include "input_file/records/records.hpp"
#include "model/words.hpp"

#include <algorithm>
#include <array>

namespace velm {
namespace {

constexpr std::array labelled{&records::module_type,
                              &records::start_date_and_time,
                              &records::skip_date_and_time,
                              &records::julian_end_time,
                              &records::number_of_systems,
                              &records::mass_balance_table_output,
                              &records::solution_technique,
                              &records::negative_solution,
                              &records::restart,
                              &records::time_optimization,
                              &records::water_quality_linkage,
                              &records::topt_factor,
                              &records::time_steps,
                              &records::print_interval,
                              &records::number_of_segments,
                              &records::bed_volume_option,
                              &records::bed_compaction_time_step,
                              &records::volume_factors,
                              &records::segment_name_caption,
                              &records::segment_caption,
                              &records::flow_pathways,
                              &records::number_of_flow_path_fields,
                              &records::number_of_flow_functions,
                              &records::number_of_flow_fields,
                              &records::number_of_inflows,
                              &records::flow_factors,
                              &records::number_of_time_pairs,
                              &records::number_of_exchange_fields,
                              &records::number_of_exchange_functions,
                              &records::exchange_factors,
                              &records::number_of_exchange_pairs,
                              &records::number_of_boundaries,
                              &records::boundary_factors,
                              &records::boundary_segment,
                              &records::nps_option,
                              &records::number_of_loads,
                              &records::load_factors,
                              &records::load_segment,
                              &records::number_of_time_functions,
                              &records::number_of_parameters,
                              &records::scale_factors,
                              &records::parameter,
                              &records::segment_assignments,
                              &records::assigned_segment,
                              &records::parameter_value,
                              &records::number_of_constants,
                              &records::constant,
                              &records::initial_conditions_for_system,
                              &records::solids_transport_field,
                              &records::solids_density,
                              &records::maximum_concentration,
                              &records::initial_condition_caption};

} // namespace

std::string_view blanks(std::size_t count)
{
    static constexpr std::string_view most = "                    ";
    return most.substr(0, count);
}

bool has_columns_of(const Record& record, std::string_view line)
{
    if (line.size() != record.width()) {
        return false;
    }
    std::size_t blank = 1;
    for (const Part& part : record) {
        const std::string_view found = line.substr(part.column - 1, part.width);
        if (line.substr(blank - 1, part.column - blank) != blanks(part.column - blank) ||
            (part.kind == PartKind::label && found != part.name)) {
            return false;
        }
        if (part.kind == PartKind::integer || part.kind == PartKind::real) {
            const std::string_view number = without_blanks(found);
            if (number.empty() || !(found.front() == '*' || begins_like_a_number(number))) {
                return false;
            }
        }
        blank = part.end() + 1;
    }
    return true;
}

bool is_another_record(const Record& expected, std::string_view line)
{
    const auto is_it = [&](const Record* record) { return record != &expected && has_columns_of(*record, line); };
    return std::any_of(labelled.begin(), labelled.end(), is_it) ||
           std::any_of(records::banners.begin(), records::banners.end(),
                       [&](const Record& banner) { return is_it(&banner); });
}

} // namespace velm
