#include "record_output/real_rendering.hpp"

#include <algorithm>
#include <string_view>

namespace velm {
namespace {

void put_right_justified(char* field, std::size_t width, std::string_view text)
{
    if (text.size() > width) {
        std::fill_n(field, width, '*');
        return;
    }
    std::fill_n(field, width - text.size(), ' ');
    std::copy(text.begin(), text.end(), field + (width - text.size()));
}

/// Digit number `position` of the value, counted from 1; 0 before the first and after the eighth.
char digit_at(std::uint64_t digits, int position)
{
    const bool known = position >= 1 && position <= 8;
    return static_cast<char>('0' + (known ? (digits >> (8 * (position - 1))) & 0xfU : 0));
}

} // namespace

void render_real_field_in_full(char* field, std::size_t width, std::size_t decimals, float value) noexcept
{
    const auto bits = std::bit_cast<std::uint32_t>(value);
    const std::uint32_t magnitude = bits & single::magnitude_bits;
    if (magnitude >= single::infinity) {
        const bool negative = bits != magnitude;
        put_right_justified(field, width, magnitude > single::infinity ? "NaN" : negative ? "-INF" : "INF");
        return;
    }

    const int places = static_cast<int>(decimals);
    DecimalDigits decimal = detail::rounded_to_places(decimal_digits(magnitude), places);
    int sign = magnitude != 0 && bits != magnitude ? 1 : 0;
    if (decimal.exponent + places <= 0) { // every digit shown is 0
        decimal = {};
        sign = 0;
    }
    const int whole = std::max(decimal.exponent, 0); // digits before the point
    const int room = static_cast<int>(width) - places - 1 - whole - sign;
    if (room < 0) {
        std::fill_n(field, width, '*');
        return;
    }
    const int leading_zero = whole == 0 && room > 0 ? 1 : 0;
    char* at = std::fill_n(field, room - leading_zero, ' ');
    at = std::fill_n(at, sign, '-');
    at = std::fill_n(at, leading_zero, '0');
    const std::uint64_t digits = detail::eight_digits(decimal.digits);
    for (int position = decimal.exponent - whole + 1; position <= decimal.exponent; ++position) {
        *at++ = digit_at(digits, position);
    }
    *at++ = '.';
    for (int position = decimal.exponent + 1; position <= decimal.exponent + places; ++position) {
        *at++ = digit_at(digits, position);
    }
}

char* detail::render_rare_free_magnitude(char* to, float value) noexcept
{
    const std::uint32_t magnitude = std::bit_cast<std::uint32_t>(value) & single::magnitude_bits;
    if (magnitude >= single::infinity) {
        return std::copy_n(magnitude == single::infinity ? "INF" : "NaN", 3, to);
    }
    if (magnitude == 0) {
        return std::copy_n("0.000000", 8, to);
    }
    return render_with_exponent(to, decimal_digits(magnitude));
}

} // namespace velm
