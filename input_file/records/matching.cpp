#include "input_file/records/matching.hpp"

#include "input_file/records/records.hpp"
#include "model/words.hpp"

#include <algorithm>
#include <array>

namespace velm {
namespace {

template <class... Records>
constexpr std::array<const Record*, sizeof...(Records)> list_of(const Records&... records)
{
    return {&records...};
}

using namespace records;
constexpr auto labelled = list_of(
    module_type, start_date_and_time, skip_date_and_time, julian_end_time, number_of_systems, mass_balance_table_output,
    solution_technique, negative_solution, restart, time_optimization, water_quality_linkage, topt_factor, time_steps,
    print_interval, number_of_segments, bed_volume_option, bed_compaction_time_step, volume_factors,
    segment_name_caption, segment_caption, flow_pathways, number_of_flow_path_fields, number_of_flow_functions,
    number_of_flow_fields, number_of_inflows, flow_factors, number_of_time_pairs, number_of_exchange_fields,
    number_of_exchange_functions, exchange_factors, number_of_exchange_pairs, number_of_boundaries, boundary_factors,
    boundary_segment, nps_option, number_of_loads, load_factors, load_segment, number_of_time_functions,
    number_of_parameters, scale_factors, parameter, segment_assignments, assigned_segment, parameter_value,
    number_of_constants, constant, initial_conditions_for_system, solids_transport_field, solids_density,
    maximum_concentration, initial_condition_caption);

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
