#pragma once

#include "record_output/decimal_digits.hpp"
#include "record_output/eight_digits.hpp"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace velm {

/// digits / 10^decimals; the digits are nine at most, below 2 * 10^8, and may end in zeros.
struct ShortestDecimal {
    std::uint32_t digits = 0;
    std::int32_t decimals = 0;
};

namespace detail {

/// How to get from a significand to the shortest decimal, for the values from 2^binary_exponent on up to the next power
/// of two.
///
/// Such a value is c * 2^q, c from 2^23 up to 2^24, and all decimals between c - 1/2 and c + 1/2 times 2^q are read as
/// it (from c - 1/4 on for the first, whose lower neighbour is nearer). Let d be the fewest decimals for which this
/// interval is at least one unit of the last of them wide, and then less than ten. So some number of d decimals lies in
/// it, and at most one number of d - 1 decimals, which is the shortest then. In units of 2^(q-2) / 10^d all is whole and
/// below 2^63: the value is 4 * c * 10^d, and one unit of its last decimal is 2^(2-q). The interval's ends are odd
/// multiples of too low a power of two for any decimal to lie on them.
///
/// Worked: 0.1f is 13421773 * 2^-27, d = 9, and lies between 0.09999999776 and 0.10000000521: 100000000 / 10^9.
struct ShortestScale {
    std::uint64_t power = 0; ///< 10^d
    std::int32_t decimals = 0;
    std::int32_t shift = 0; ///< 2 - q
};

inline constexpr int least_exponent = -13;   // so that all is below 2^63
inline constexpr int exponents = 24 - least_exponent; // from 2^24 on, not all whole numbers are singles

inline constexpr auto shortest_scales = [] {
    std::array<ShortestScale, exponents> scales{};
    for (int i = 0; i < exponents; ++i) {
        const int places = single::fraction_width - least_exponent - i; // -q
        int decimals = 0;
        while (power_of_ten(static_cast<std::size_t>(decimals)) < std::uint64_t{1} << places) {
            ++decimals;
        }
        scales[static_cast<std::size_t>(i)] = {power_of_ten(static_cast<std::size_t>(decimals)), decimals, 2 + places};
    }
    return scales;
}();

/// A choice that stays without a branch.
constexpr std::uint64_t choose(bool condition, std::uint64_t one, std::uint64_t other)
{
    return other ^ ((one ^ other) & (0U - std::uint64_t{condition}));
}

} // namespace detail

/// The magnitudes that shortest_decimal takes: from 2^-13, about 0.00012, up to 2^24.
constexpr bool has_shortest_decimal(std::uint32_t magnitude) noexcept
{
    constexpr std::uint32_t least = std::bit_cast<std::uint32_t>(0x1p-13F);
    constexpr std::uint32_t beyond = std::bit_cast<std::uint32_t>(0x1p24F);
    return magnitude - least < beyond - least;
}

/// The fewest decimals that are read as the single-precision magnitude again, given as its bits; of several with as many
/// the nearest to it, of two equally near the even one. Without branches, for nothing foretells how many the next value
/// has.
constexpr ShortestDecimal shortest_decimal(std::uint32_t magnitude) noexcept
{
    constexpr std::uint32_t least = std::bit_cast<std::uint32_t>(0x1p-13F) >> single::fraction_width;
    const detail::ShortestScale& scale = detail::shortest_scales[(magnitude >> single::fraction_width) - least];
    const std::uint32_t fraction = magnitude & single::fraction_bits;
    const std::uint64_t value = 4 * scale.power * (fraction | single::leading_bit);
    const std::uint64_t lower = value - (scale.power << (fraction != 0 ? 1 : 0));
    const std::uint64_t upper = value + 2 * scale.power;

    const std::uint64_t below_half = (std::uint64_t{1} << (scale.shift - 1)) - 1;
    const std::uint64_t nearest = (value + below_half + (value >> scale.shift & 1U)) >> scale.shift;
    const std::uint64_t shorter = static_cast<std::uint32_t>(upper >> scale.shift) / 10 * 10;
    const bool is_inside = shorter << scale.shift > lower;
    return {static_cast<std::uint32_t>(detail::choose(is_inside, shorter, nearest)), scale.decimals};
}

static_assert(shortest_decimal(std::bit_cast<std::uint32_t>(0.1F)).digits == 100'000'000);
static_assert(shortest_decimal(std::bit_cast<std::uint32_t>(0.1F)).decimals == 9);

} // namespace velm
