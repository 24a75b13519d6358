#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velm {

/// What a number's text was found to be.
enum class RealTextKind {
    exact,      ///< an export writes the value with just these characters
    other_form, ///< a number, but an export writes its value differently
    asterisks,
    not_finite, ///< INF, -INF or NaN
    no_single,  ///< a number too large or too small for single precision
    no_number,
};

/// A real as its text says it. `value` is the single-precision value whose text this is: the nearest to the text, or
/// else its neighbour that is written so; 0 for a text that has no value.
struct RealText {
    RealTextKind kind = RealTextKind::no_number;
    float value = 0;
};

/// The text of a field of `text.size()` columns with `decimals` digits after the point.
[[nodiscard]] RealText real_in_field(std::string_view text, std::size_t decimals);

/// The text of a real in a row, without blanks.
[[nodiscard]] RealText real_in_row(std::string_view text);

/// How an export writes the value into such a field, or into a row.
[[nodiscard]] std::string field_text(float value, std::size_t width, std::size_t decimals);
[[nodiscard]] std::string row_text(float value);

} // namespace velm
