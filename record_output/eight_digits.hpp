#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace velm::detail {

static_assert(std::endian::native == std::endian::little, "the first digit of eight is the lowest byte");

inline constexpr std::uint64_t eight_zeros = 0x3030'3030'3030'3030U;  // "00000000"
inline constexpr std::uint64_t eight_blanks = 0x2020'2020'2020'2020U; // "        "
inline constexpr std::uint64_t blank_to_zero = eight_zeros - eight_blanks;

constexpr std::uint64_t power_of_ten(std::size_t exponent)
{
    return exponent == 0 ? 1 : 10 * power_of_ten(exponent - 1);
}

/// The four decimal digits of each number below 10,000, each as a byte from 0 to 9, the first in the lowest byte.
inline constexpr auto four_digits = [] {
    std::array<std::uint32_t, 10'000> digits{};
    for (std::uint32_t number = 0; number < digits.size(); ++number) {
        digits[number] = number / 1000 | (number / 100 % 10) << 8 | (number / 10 % 10) << 16 | (number % 10) << 24;
    }
    return digits;
}();

/// The eight decimal digits of a number below 10^8, in the same way.
constexpr std::uint64_t eight_digits(std::uint32_t number) noexcept
{
    return four_digits[number / 10'000] | std::uint64_t{four_digits[number % 10'000]} << 32;
}

static_assert(eight_digits(12345678) == 0x0807'0605'0403'0201U);
static_assert(eight_digits(99999999) == 0x0909'0909'0909'0909U);

} // namespace velm::detail
