#pragma once

#include <cstdint>
#include <string_view>

namespace velm {

/// What an integer's text was found to be.
enum class IntegerTextKind {
    exact,      ///< as an export writes the value
    other_form, ///< an integer, but written differently
    asterisks,
    too_large, ///< beyond 32 bits
    no_number,
};

struct IntegerText {
    IntegerTextKind kind = IntegerTextKind::no_number;
    std::int32_t value = 0;
};

/// The text of a field, where an integer stands at the right end, or of a number in a row, without blanks.
[[nodiscard]] IntegerText integer_in(std::string_view text, bool in_field);

[[nodiscard]] constexpr bool is_asterisks(std::string_view text)
{
    return !text.empty() && text.find_first_not_of('*') == std::string_view::npos;
}

} // namespace velm
