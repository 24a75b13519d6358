#pragma once

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

/// What one section of an export fetches and a later one reads, and the values that outlive an export because
/// the host may leave them alone: texts that are not cleared before a request, and factors that one field
/// hands to the next. It lives as long as the library is loaded. Tables are made afresh by the section
/// named with them. A table that no other section reads is not here: its entries are variables of the section.
struct ModelState {
    Text<512> output_file_name{};

    // system information
    Integer number_of_systems = 0;
    std::vector<Text<30>> system_names;

    // segments
    Integer number_of_segments = 0;
    Integer bed_volume_option = 0;
    Real volume_scale_factor = 0;
    Real volume_conversion_factor = 0;
    std::vector<Integer> flow_options;

    // flow paths and flows
    Integer number_of_flow_fields = 0;
    std::vector<Integer> flow_function_counts; ///< made by the flow paths, filled again by the flows
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
    std::vector<Integer> isc_numbers;
    std::vector<Integer> instance_counts;
    Integer number_of_time_function_types = 0;
    Integer number_of_parameter_types = 0;
};

extern ModelState model;

template <class Entry>
[[gnu::noinline]] void grow_to(std::vector<Entry>& table, std::size_t entries)
{
    table.resize(entries);
}

/// Entry `number` of a table, counted from 1. A table grows to the entry asked for, with zeros, so that it holds
/// what the host reports, and no more, however many items the host says are to come.
template <class Entry>
Entry& entry_of(std::vector<Entry>& table, Integer number)
{
    const auto position = static_cast<std::size_t>(number) - 1;
    if (position >= table.size()) [[unlikely]] {
        grow_to(table, position + 1); // out of line, so that the rest of this function is not
    }
    return table[position];
}

/// The first `count` entries of a table, which grows to them as in entry_of; for loops over many. They hold until the
/// table grows again.
template <class Entry>
std::span<const Entry> first_entries(std::vector<Entry>& table, Integer count)
{
    const std::size_t entries = count > 0 ? static_cast<std::size_t>(count) : 0;
    if (entries > table.size()) {
        grow_to(table, entries);
    }
    return {table.data(), entries};
}

} // namespace velm

/// Part of the library's interface, and empty: hosts find the module by it.
extern "C" __attribute__((visibility("default"))) void IMPORT_EXPORT();
