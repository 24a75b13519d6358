#pragma once

#include "record_output/eight_digits.hpp"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace velm {

/// The pieces of a session's lines, as JSON. Made for speed: an export asks millions of times. Each function writes to
/// where `to` has room enough and returns the end of what counts; wide stores spill over behind it.

/// Characters that a whole number needs at most, what is spilt included.
inline constexpr std::size_t number_room = 32;

namespace detail {

/// "0" to "999", and how many characters that is; copied whole in one piece.
struct SmallNumber {
    std::array<char, 3> text{};
    std::uint8_t size = 0;
};

inline constexpr auto small_numbers = [] {
    std::array<SmallNumber, 1000> numbers{};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        for (std::size_t unit = i < 10 ? 1 : i < 100 ? 10 : 100; unit != 0; unit /= 10) {
            numbers[i].text[numbers[i].size++] = static_cast<char>('0' + i / unit % 10);
        }
    }
    return numbers;
}();

} // namespace detail

/// Below 10^8.
inline char* put_whole(char* to, std::uint32_t number) noexcept
{
    if (number < detail::small_numbers.size()) { // most of all: numbers of systems, functions, time pairs
        const detail::SmallNumber& small = detail::small_numbers[number];
        std::memcpy(to, &small, sizeof small);
        return to + small.size;
    }
    const std::uint64_t digits = detail::eight_digits(number);
    constexpr std::uint64_t last_of_eight = std::uint64_t{1} << 56; // spares a test for 0
    const int leading_zeros = std::countr_zero(digits | last_of_eight) / 8;
    const std::uint64_t text = (digits | detail::eight_zeros) >> 8 * leading_zeros;
    std::memcpy(to, &text, sizeof text);
    return to + 8 - leading_zeros;
}

/// Any number.
char* put_large_integer(char* to, std::int64_t number) noexcept;

inline char* put_integer(char* to, std::int64_t number) noexcept
{
    constexpr std::uint64_t eight_digit_limit = 100'000'000;
    return static_cast<std::uint64_t>(number) < eight_digit_limit ? put_whole(to, static_cast<std::uint32_t>(number))
                                                                  : put_large_integer(to, number);
}

/// Characters that a text of `size` bytes needs at most.
constexpr std::size_t text_room(std::size_t size)
{
    return 2 + 6 * size;
}

/// Every byte as the character of its number: printable ones as they are, others as \u00NN.
char* put_text(char* to, std::string_view bytes) noexcept;

[[nodiscard]] std::string text_as_json(std::string_view bytes);

/// Characters that the ranges in a text of `size` bytes need at most: every other byte, up to [65535,65535].
constexpr std::size_t ranges_room(std::size_t size)
{
    return number_room + 14 * (size + 1) / 2;
}

/// The ranges, counted from 1, in which both texts, of the same size, are the same: [[1,4],[8,30]].
char* put_equal_ranges(char* to, std::string_view before, std::string_view after) noexcept;

} // namespace velm
