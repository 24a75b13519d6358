#pragma once

#include "record_output/decimal_digits.hpp"
#include "record_output/eight_digits.hpp"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace velm {

/// (10 * tens + ones) / 10^decimals. The tens are seven or eight digits, below 2 * 10^7; zeros may stand at the end.
struct ShortestDecimal {
    std::uint32_t tens = 0; ///< also known earlier, so that their digits need not wait for the ones
    std::uint32_t ones = 0;
    std::int32_t decimals = 0;
};

namespace detail {

/// How to get from a significand to the shortest decimal, for values between two powers of two.
///
/// Such a value is c * 2^q, c from 2^23 up to 2^24, and all decimals between c - 1/2 and c + 1/2 times 2^q are read as
/// it. Let d be the fewest decimals of which one unit of the last is not wider than this interval, and more than a
/// tenth of it. Then some number of d decimals lies in the interval, and at most one of d - 1 decimals, which is the
/// shortest if there is one. In units of the last of d decimals the value is c * 2^q * 10^d. That is computed with 32
/// binary places, and exactly: 10^d has as many factors of two as 2^q leaves over. No decimal lies on the interval's
/// ends, which have one binary place more than any.
///
/// Worked: 0.1f is 13421773 * 2^-27, d = 9, and lies between 0.09999999776 and 0.10000000521: 10000000 / 10^8.
struct ShortestScale {
    std::uint64_t interval = 0; ///< 2^q * 10^d * 2^32
    std::int32_t decimals = 0;  ///< d
};

inline constexpr int least_exponent = -13;
inline constexpr int exponents = 24 - least_exponent;

inline constexpr auto shortest_scales = [] {
    std::array<ShortestScale, exponents> scales{};
    int decimals = 0;
    for (int places = 0; places < exponents; ++places) { // -q
        while (power_of_ten(static_cast<std::size_t>(decimals)) < std::uint64_t{1} << places) {
            ++decimals;
        }
        const std::uint64_t fives = power_of_ten(static_cast<std::size_t>(decimals)) >> decimals;
        scales[static_cast<std::size_t>(exponents - 1 - places)] = {fives << (32 + decimals - places), decimals};
    }
    return scales;
}();

} // namespace detail

/// Whether shortest_decimal takes the magnitude: from 2^-13, about 0.00012, up to 2^24.
constexpr bool has_shortest_decimal(std::uint32_t magnitude) noexcept
{
    constexpr std::uint32_t least = std::bit_cast<std::uint32_t>(0x1p-13F);
    constexpr std::uint32_t beyond = std::bit_cast<std::uint32_t>(0x1p24F);
    return magnitude - least < beyond - least;
}

/// The fewest decimals that are read as the single-precision magnitude again, given as its bits; of several with as
/// many the nearest to it, of two equally near the even one. Without branches, for nothing foretells how many the next
/// value has.
constexpr ShortestDecimal shortest_decimal(std::uint32_t magnitude) noexcept
{
    constexpr std::uint32_t least = std::bit_cast<std::uint32_t>(0x1p-13F) >> single::fraction_width;
    const detail::ShortestScale& scale = detail::shortest_scales[(magnitude >> single::fraction_width) - least];
    const std::uint64_t value = ((magnitude & single::fraction_bits) | single::leading_bit) * scale.interval;
    const std::uint64_t lower = value - scale.interval / 2;
    const std::uint64_t upper = value + scale.interval / 2;

    const std::uint64_t below_half = (std::uint64_t{1} << 31) - 1;
    const auto nearest = static_cast<std::uint32_t>((value + below_half + (value >> 32 & 1U)) >> 32);
    const std::uint32_t tens = static_cast<std::uint32_t>(upper >> 32) / 10;
    const bool are_inside = std::uint64_t{10 * tens} << 32 > lower; // if not, the nearest has as many tens
    return {tens, (nearest - 10 * tens) & (std::uint32_t{are_inside} - 1), scale.decimals};
}

static_assert(shortest_decimal(std::bit_cast<std::uint32_t>(0.1F)).tens == 10'000'000);
static_assert(shortest_decimal(std::bit_cast<std::uint32_t>(0.1F)).decimals == 9);

} // namespace velm
