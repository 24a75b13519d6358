#pragma once

#include "record_output/eight_digits.hpp"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace velm {

/// Digits and sign of a 32-bit integer at most.
inline constexpr std::size_t integer_room = 11;

/// Renders `value` in decimal without padding and returns the end. Writes at most integer_room characters.
inline char* render_integer(char* to, std::int32_t value) noexcept
{
    char reversed[integer_room];
    std::size_t count = 0;
    // negated as unsigned, so that the least integer has a magnitude too
    std::uint32_t rest = value < 0 ? 0U - static_cast<std::uint32_t>(value) : static_cast<std::uint32_t>(value);
    do {
        reversed[count++] = static_cast<char>('0' + rest % 10);
        rest /= 10;
    } while (rest != 0);
    if (value < 0) {
        *to++ = '-';
    }
    while (count != 0) {
        *to++ = reversed[--count];
    }
    return to;
}

/// Renders `value` right-justified into exactly `width` characters; asterisks when it does not fit.
template <std::size_t width>
void render_integer_field(char* field, std::int32_t value) noexcept
{
    if constexpr (width > 7) { // more than eight digits, or seven and a sign
        char text[integer_room];
        const auto size = static_cast<std::size_t>(render_integer(text, value) - text);
        if (size > width) {
            std::memset(field, '*', width);
            return;
        }
        std::memset(field, ' ', width - size);
        std::memcpy(field + (width - size), text, size);
    } else {
        constexpr std::uint64_t limit = detail::power_of_ten(width);
        const bool negative = value < 0;
        // negated as unsigned, so that the least integer has a magnitude too
        const std::uint32_t magnitude =
            negative ? 0U - static_cast<std::uint32_t>(value) : static_cast<std::uint32_t>(value);
        if (magnitude >= (negative ? limit / 10 : limit)) [[unlikely]] {
            std::memset(field, '*', width);
            return;
        }
        // the last `width` of eight columns: blanks for the zeros before the first digit, one of them a minus sign
        const std::uint64_t digits = detail::eight_digits(magnitude);
        const int blanks = std::countr_zero(digits | (std::uint64_t{1} << 56)) & ~7; // bits of them
        const std::uint64_t blanked = detail::blank_to_zero & ((std::uint64_t{1} << blanks) - 1);
        const std::uint64_t minus = negative ? std::uint64_t{'-' ^ ' '} << (blanks - 8) : 0;
        const std::uint64_t text = ((digits | detail::eight_zeros) ^ blanked) ^ minus;
        const std::uint64_t fitting = text >> (8 * (8 - width));
        std::memcpy(field, &fitting, width);
    }
}

/// Renders a text of N characters into exactly `width`: cut at its end, or with blanks before it. Every
/// character counts, NUL and blanks included.
template <std::size_t width, std::size_t N>
void render_text_field(char* field, const std::array<char, N>& text) noexcept
{
    if constexpr (N < width) {
        std::memset(field, ' ', width - N);
        std::memcpy(field + (width - N), text.data(), N);
    } else {
        std::memcpy(field, text.data(), width);
    }
}

} // namespace velm
