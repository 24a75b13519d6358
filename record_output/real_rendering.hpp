#pragma once

#include "record_output/decimal_digits.hpp"
#include "record_output/eight_digits.hpp"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace velm {

/// How single-precision reals become text. Of a value only its first eight significant digits are known
/// (decimal_digits.hpp); later ones are 0. One rule rounds everywhere: the first digit that is not shown
/// decides, 5 to 9 up, 0 to 4 down. When that digit is beyond the eighth, the eighth decides in its place: 5 to 9
/// make it 0 and carry into the seventh, 0 to 4 leave it. Nothing here depends on the locale or rounding mode.

/// Characters that render_free_real needs at most: "-1.234567E+12" and what its wide stores spill over.
inline constexpr std::size_t free_real_room = 16;

/// Renders `value` into a field of `width` columns with `decimals` digits after the point, writing exactly
/// `width` characters (1 or more). For every value, the rare ones included:
/// - right-justified; one "0" before the point of a fraction, left out when just that column lacks;
/// - "-" before the first digit, but not when all digits shown are 0;
/// - INF, -INF, NaN right-justified;
/// - asterisks when the field is too narrow.
void render_real_field_in_full(char* field, std::size_t width, std::size_t decimals, float value) noexcept;

/// The same for a width and decimals that the compiler knows: straight-line code for the common values.
template <std::size_t width, std::size_t decimals>
void render_real_field(char* field, float value) noexcept;

/// Whether render_free_real begins with a minus sign: not for zero, and never for what is no number.
constexpr bool shows_minus(float value) noexcept
{
    const auto bits = std::bit_cast<std::uint32_t>(value);
    return bits > single::sign_bit && bits <= (single::sign_bit | single::infinity);
}

/// Renders `value` in the free form, without the blanks that separate it, and returns the end. Writes to at
/// most free_real_room characters. Magnitudes from 0.1 up to 999,999 and zero have six significant
/// digits and a point (0.500000, 86400.0, 999999.), others seven and an exponent (5.000000E-02).
char* render_free_real(char* to, float value) noexcept;

/// The same without the minus sign, in one character less.
char* render_free_magnitude(char* to, float value) noexcept;

namespace detail {

/// Half a unit of the last of `shown` digits out of eight.
inline constexpr std::uint32_t half_of_last_shown[8] = {50'000'000, 5'000'000, 500'000, 50'000, 5'000, 500, 50, 5};

/// Rounds to `decimals` places after the point. Digits that are not shown are left as they fall, except that the
/// eighth is right when it is shown.
constexpr DecimalDigits rounded_to_places(DecimalDigits value, int decimals) noexcept
{
    const int shown = value.exponent + decimals;
    std::uint32_t digits = value.digits;
    if (shown >= 8) {
        const std::uint32_t eighth = digits % 10;
        digits += eighth >= 5 ? 10 - eighth : 0;
    } else if (shown >= 0) {
        digits += half_of_last_shown[shown];
    }
    if (digits >= eight_digit_limit) {
        return {digits / 10, value.exponent + 1};
    }
    return {digits, value.exponent};
}

/// Renders a value of which more than eight digits would be shown, or anything rarer, into its field.
template <std::size_t columns, std::size_t decimals>
inline void render_large_real_field(char* field, float value) noexcept
{
    constexpr int most_digits = columns < 8 ? static_cast<int>(columns) : 8;
    const auto bits = std::bit_cast<std::uint32_t>(value);
    const std::uint32_t magnitude = bits & single::magnitude_bits;
    const auto negative = static_cast<int>(bits >> 31);
    DecimalDigits decimal{0, most_digits + 1};
    if (magnitude < single::infinity) {
        decimal = rounded_to_places(decimal_digits(magnitude), static_cast<int>(decimals));
    }
    if (decimal.exponent + negative > most_digits) [[unlikely]] {
        render_real_field_in_full(field, columns + 1 + decimals, decimals, value);
        return;
    }
    // eight columns that end at the point: blanks, then the digits before it
    const std::uint64_t digits = eight_digits(decimal.digits);
    const int unused = 64 - 8 * decimal.exponent; // of so large a value: 0 to 56
    // NOLINTNEXTLINE(clang-analyzer-core.UndefinedBinaryOperatorResult): the analyzer does not follow the exponent
    const std::uint64_t before_point = (digits << unused) | eight_blanks | (blank_to_zero << unused);
    if constexpr (columns >= 8) {
        std::memset(field, ' ', columns - 8);
        std::memcpy(field + (columns - 8), &before_point, 8);
    } else {
        const std::uint64_t fitting = before_point >> (8 * (8 - columns));
        std::memcpy(field, &fitting, columns);
    }
    if (negative != 0) {
        field[columns - static_cast<std::size_t>(decimal.exponent) - 1] = '-';
    }
    field[columns] = '.';
    // two shifts, because one by 64 has no meaning
    const std::uint64_t after_point = (digits >> (4 * decimal.exponent)) >> (4 * decimal.exponent) | eight_zeros;
    std::memcpy(field + columns + 1, &after_point, decimals);
}

/// Seven significant digits and an exponent. Writes free_real_room - 1 characters at most.
inline char* render_with_exponent(char* to, DecimalDigits decimal) noexcept
{
    std::uint32_t seven = decimal.digits + half_of_last_shown[7];
    int exponent = decimal.exponent - 1;
    if (seven >= eight_digit_limit) {
        seven /= 10;
        ++exponent;
    }
    const std::uint64_t digits = eight_digits(seven) | eight_zeros;
    std::memcpy(to + 1, &digits, 8);
    to[0] = to[1];
    to[1] = '.';
    to[8] = 'E';
    to[9] = exponent < 0 ? '-' : '+';
    const int size = exponent < 0 ? -exponent : exponent;
    to[10] = static_cast<char>('0' + size / 10);
    to[11] = static_cast<char>('0' + size % 10);
    return to + 12;
}

/// A value that render_free_magnitude finds to be zero, subnormal, infinite or not a number.
char* render_rare_free_magnitude(char* to, float value) noexcept;

} // namespace detail

template <std::size_t width, std::size_t decimals>
inline void render_real_field(char* field, float value) noexcept
{
    constexpr std::size_t whole = decimals <= 6 ? 8 - decimals : 0; // digits before the point when eight are shown
    if constexpr (decimals == 0 || decimals > 6 || width < whole + 1 + 1 + decimals) {
        render_real_field_in_full(field, width, decimals, value); // no such field stands in a long record
    } else {
        constexpr std::size_t columns = width - decimals - 1; // before the point
        // from here on more than eight digits would be shown (a power of ten that is a single without rounding), or
        // there is nothing behind the point
        constexpr float large = std::min(static_cast<float>(detail::power_of_ten(8 - decimals)), 0x1p23F);
        const auto bits = std::bit_cast<std::uint32_t>(value);
        const std::uint32_t magnitude = bits & single::magnitude_bits;
        if (magnitude >= std::bit_cast<std::uint32_t>(large)) { // or infinite, or not a number
            detail::render_large_real_field<columns, decimals>(field, value);
            return;
        }
        // value * 10^decimals = scaled / 2^shift, exactly. A subnormal is taken for a normal number, and a shift of
        // more than 63 for 63: both show only zeros.
        constexpr std::uint64_t scale = detail::power_of_ten(decimals);
        const std::uint64_t scaled = ((bits & single::fraction_bits) | single::leading_bit) * scale;
        const int shift = std::min(single::exponent_bias - static_cast<int>(magnitude >> single::fraction_width), 63);
        const std::uint64_t cut = scaled >> shift;
        std::uint64_t shown = (scaled + (std::uint64_t{1} << (shift - 1))) >> shift;
        if (cut >= eight_digit_limit / 10) { // the last digit shown is the eighth or a later one
            const std::uint64_t eighth = cut % 10;
            shown = cut + (eighth >= 5 ? 10 - eighth : 0);
            if (shown >= eight_digit_limit) [[unlikely]] {
                detail::render_large_real_field<columns, decimals>(field, value);
                return;
            }
        }

        // the digits stand in the field as they stand in eight columns, a point between them and blanks for zeros
        const std::uint64_t digits = detail::eight_digits(static_cast<std::uint32_t>(shown));
        const int blanks = std::countr_zero(digits | (std::uint64_t{1} << (8 * (whole - 1)))) & ~7; // bits of them
        const std::uint64_t blanked = detail::blank_to_zero & ((std::uint64_t{1} << blanks) - 1);
        const std::uint64_t text = (digits | detail::eight_zeros) ^ blanked;
        const std::uint64_t minus = shown != 0 ? std::uint64_t{bits >> 31} * ('-' ^ ' ') : 0;
        const std::uint64_t before_point = ((text << 8) | ' ') ^ (minus << blanks);
        std::memset(field, ' ', columns - whole - 1);
        std::memcpy(field + (columns - whole - 1), &before_point, 8);
        field[columns] = '.';
        const std::uint64_t after_point = text >> (8 * whole);
        std::memcpy(field + columns + 1, &after_point, decimals);
    }
}

inline char* render_free_magnitude(char* to, float value) noexcept
{
    const std::uint32_t magnitude = std::bit_cast<std::uint32_t>(value) & single::magnitude_bits;
    if (magnitude - single::leading_bit >= single::infinity - single::leading_bit) [[unlikely]] {
        return detail::render_rare_free_magnitude(to, value); // zero, subnormal, infinite, not a number
    }

    // Six significant digits decide the form. A value is written with a point when its exponent after rounding
    // to seven places is 0 to 6; that rounding can change the exponent only from -1 to 0, where seven places are
    // six significant digits (0.09999999 becomes 0.100000). The places shown are then counted from
    // the exponent after the rounding to six digits (9.999997 becomes 10.0000), and 999,999.5 and
    // above, which would become 1000000., keep the exponent form.
    const DecimalDigits decimal = decimal_digits(magnitude);
    std::uint32_t six = decimal.digits + detail::half_of_last_shown[6];
    const bool carried = six >= eight_digit_limit;
    const int point = decimal.exponent + (carried ? 1 : 0);
    if (point >= 0 && point <= 6) {
        six = carried ? six / 10 : six;
        const std::uint64_t digits = detail::eight_digits(six) | detail::eight_zeros;
        if (point == 0) {
            std::memcpy(to, "0.", 2);
            std::memcpy(to + 2, &digits, 8);
            return to + 8;
        }
        const std::uint64_t before = ~std::uint64_t{0} >> (64 - 8 * point);
        const std::uint64_t text = (digits & before) | (std::uint64_t{'.'} << (8 * point)) | ((digits & ~before) << 8);
        std::memcpy(to, &text, 8);
        return to + 7;
    }
    return detail::render_with_exponent(to, decimal);
}

inline char* render_free_real(char* to, float value) noexcept
{
    *to = '-';
    return render_free_magnitude(to + (shows_minus(value) ? 1 : 0), value);
}

} // namespace velm
