#pragma once

#include "input_file/input_file.hpp"

#include <string_view>

namespace velm {

/// The section of an input file that a column of a model database is written to; the first, where there are several.
[[nodiscard]] inline Section section_of(std::string_view table, std::string_view column)
{
    if (table == "model") {
        return column == "hydrodynamic_file"                                 ? Section::flow_paths
               : column.starts_with("nps_")                                  ? Section::loads
               : column.starts_with("bed_") || column.starts_with("volume_") ? Section::segments
                                                                             : Section::system_information;
    }
    if (table == "system") {
        return column.starts_with("boundary_")                         ? Section::boundaries
               : column.starts_with("load_")                           ? Section::loads
               : column.empty() || column == "name" || column == "tag" ? Section::system_information
                                                                       : Section::initial_conditions;
    }
    if (table == "flow_field" || table == "flow_value") {
        return Section::flow_series;
    }
    return table.starts_with("segment")         ? Section::segments
           : table.starts_with("flow_")         ? Section::flow_paths
           : table.starts_with("exchange_")     ? Section::exchanges
           : table.starts_with("boundary")      ? Section::boundaries
           : table.starts_with("load")          ? Section::loads
           : table.starts_with("time_function") ? Section::time_functions
           : table.starts_with("parameter")     ? Section::parameters
           : table.starts_with("constant")      ? Section::constants
                                                : Section::initial_conditions;
}

} // namespace velm
