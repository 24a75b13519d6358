#pragma once

#include "Utilities/IMPORT/table.hpp"
#include "host_link/text_field.hpp"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace velm {

using Integer = std::int32_t;
using Real = float;

/// Time pairs that one boundary or load can have: the host writes a series in one go, and this is its room.
inline constexpr std::size_t time_pair_room = 100'000;

/// What one section of an export fetches and a later one reads, and the values that outlive an export: a host that
/// leaves one of them alone finds in the file what was there before. It lives as long as the library is loaded. Tables
/// are made afresh by the section named with them. A table that no other section reads is not here: its entries are
/// variables of the section.
struct ModelState {
    Text<512> output_file_name{};

    // system information
    Integer model_type = 0;
    Integer start_time[3]{};
    Integer start_date[3]{};
    Integer skip_date[3]{};
    Integer skip_time[3]{};
    Real julian_end_time = 0;
    Integer number_of_systems = 0;
    Integer mass_balance_table_output = 0;
    Integer solution_technique = 0;
    Integer negative_solution = 0;
    Integer restart = 0;
    Integer time_optimization = 0;
    Integer water_quality_linkage = 0;
    Real topt_factor = 0;
    Real maximum_time_step = 0;
    Real minimum_time_step = 0;
    Real print_interval = 0;
    Table<Text<30>> system_names;

    // segments
    Integer number_of_segments = 0;
    Integer bed_volume_option = 0;
    Real volume_scale_factor = 0;
    Real volume_conversion_factor = 0;
    Integer flow_option_of_segment_1 = 0; ///< the only one that is read again

    // flow paths and flows
    Integer number_of_flow_fields = 0;
    Table<Integer> flow_function_counts; ///< made by the flow paths, filled again by the flows
    Text<512> hydrodynamic_file_name{};
    Real flow_scale_factor = 0;
    Real flow_conversion_factor = 0;

    // dispersive exchanges
    Integer number_of_exchange_fields = 0;
    Real dispersion_scale_factor = 0;
    Real dispersion_conversion_factor = 0;

    /// Of flow functions, exchange functions and time functions in turn.
    Text<80> description{};

    // boundaries and loads
    std::vector<Real> series_times;  ///< time_pair_room entries, made by the boundaries
    std::vector<Real> series_values; ///< the same
    Integer nps_option = 0;
    Text<512> nps_file_name{};

    // time functions, then parameters, then constants; made by the time functions
    Table<Integer> isc_numbers;
    Table<Integer> instance_counts;
    Integer number_of_time_function_types = 0;
    Integer number_of_parameter_types = 0;
};

extern ModelState model;

/// The first `count` entries of a series table, which has that many; for loops over many.
inline std::span<const Real> first_entries(const std::vector<Real>& table, Integer count)
{
    return {table.data(), count > 0 ? static_cast<std::size_t>(count) : 0};
}

} // namespace velm

/// Part of the library's interface, and empty: hosts find the module by it.
extern "C" __attribute__((visibility("default"))) void IMPORT_EXPORT();
