#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace velm {

/// The line that names field `number` of the flow time series or of the dispersive exchanges: a blank, the name, NUL
/// and blanks. Fields beyond `names` are called by `kind` and number.
inline std::string field_name_line(std::span<const std::string_view> names, std::string_view kind, std::int32_t number)
{
    constexpr std::size_t width = 41;
    const auto place = static_cast<std::size_t>(number) - 1;
    std::string line = " ";
    line += place < names.size() ? std::string(names[place]) : std::string(kind) + ' ' + std::to_string(number);
    line += '\0';
    line.resize(std::max(width, line.size()), ' ');
    return line;
}

} // namespace velm
