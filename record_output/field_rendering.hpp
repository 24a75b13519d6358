#pragma once

#include <array>
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
    char text[integer_room];
    const auto size = static_cast<std::size_t>(render_integer(text, value) - text);
    if (size > width) {
        std::memset(field, '*', width);
        return;
    }
    std::memset(field, ' ', width - size);
    std::memcpy(field + (width - size), text, size);
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
