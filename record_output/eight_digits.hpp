#pragma once

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

/// The eight decimal digits of a number below 10^8, each as a byte from 0 to 9, the first in the lowest byte.
/// Halves the number three times, all parts at once: 12345678 -> 1234|5678 -> 12|34|56|78 -> 1|2|...|8. The
/// divisions by 100 and 10 are multiplications by 10486/2^20 and 103/2^10, exact below 10,000 and below 100. A part p
/// of w bits becomes its quotient and, above that, its remainder: (p << w) - quotient * ((divisor << w) - 1).
constexpr std::uint64_t eight_digits(std::uint32_t number) noexcept
{
    const std::uint64_t upper = number / 10'000;
    const std::uint64_t fours = (std::uint64_t{number} << 32) - upper * ((std::uint64_t{10'000} << 32) - 1);
    const std::uint64_t hundreds = ((fours * 10486) >> 20) & 0x0000'007f'0000'007fU;
    const std::uint64_t twos = (fours << 16) - hundreds * ((100U << 16) - 1);
    const std::uint64_t tens = ((twos * 103) >> 10) & 0x000f'000f'000f'000fU;
    return (twos << 8) - tens * ((10U << 8) - 1);
}

static_assert(eight_digits(12345678) == 0x0807'0605'0403'0201U);
static_assert(eight_digits(99999999) == 0x0909'0909'0909'0909U);

} // namespace velm::detail
