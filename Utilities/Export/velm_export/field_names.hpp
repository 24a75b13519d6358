#pragma once

#include "Utilities/IMPORT/import_export.hpp"
#include "record_output/field_rendering.hpp"

#include <cstddef>
#include <string_view>

namespace velm {

/// The name of field `number`, counted from 1, as its record holds it: the name, one NUL, blanks. A field beyond
/// the table is named by `kind` and its number, such as "Flow Field 7".
template <std::size_t count>
Text<40> field_name(const std::string_view (&names)[count], std::string_view kind, Integer number)
{
    if (number <= static_cast<Integer>(count)) {
        return nul_ended<40>(names[number - 1]);
    }
    Text<40> text{};
    char* end = std::copy(kind.begin(), kind.end(), text.data());
    *end++ = ' ';
    end = render_integer(end, number);
    return nul_ended<40>({text.data(), static_cast<std::size_t>(end - text.data())});
}

} // namespace velm
