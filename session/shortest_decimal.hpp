#pragma once

#include "record_output/decimal_digits.hpp"
#include "record_output/eight_digits.hpp"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace velm {

/// (10 * tens + ones) / 10^decimals; zeros may stand at the end.
struct ShortestDecimal {
    std::uint32_t tens = 0; ///< of six to eight digits; known before the ones are, for which their digits need not wait
    std::uint32_t ones = 0;
    std::int32_t decimals = 0;
};

namespace detail {

/// How to get from a significand to the shortest decimal, for values between two powers of two.
///
/// Such a value is c * 2^q, c from 2^23 up to 2^24, and all decimals between c - 1/2 and c + 1/2 times 2^q are read as
/// it. Let d be the fewest decimals of which a unit of the last is not wider than this interval. Then a number of d
/// decimals lies in it, and at most one of d - 1, for ten units are wider; that one is the shortest if there is one,
/// and may end in zeros. In units of the last decimal the value is c * 2^q * 10^d. With 32 binary places this is exact,
/// for 10^d takes its factors of two from 2^q. An interval's end is never a decimal: 2^(q-1) is more than 10^d takes.
///
/// Worked: 0.1f is 13421773 * 2^-27, d = 9, and in units 100000001.49. The interval reaches from 99999997.77 to
/// 100000005.21, and 100000000 lies in it.
///
/// For a power of two, c = 2^23, the interval begins only 1/4 below. Of those here which are not whole, this rules out
/// no decimal that is found.
struct ShortestScale {
    std::uint64_t interval = 0; ///< 2^q * 10^d * 2^32
    std::int32_t decimals = 0;  ///< d
};

inline constexpr int least_exponent = -13; // most of what is smaller is shorter with an exponent
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
    constexpr auto least = std::bit_cast<std::uint32_t>(0x1p-13F);
    constexpr auto beyond = std::bit_cast<std::uint32_t>(0x1p24F);
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
    const std::uint32_t tens = static_cast<std::uint32_t>(upper >> 32) / 10; // if not inside, those of the nearest too
    const std::uint32_t outside = std::uint64_t{tens} * 10 << 32 > lower ? 0 : 1;
    return {tens, (nearest - 10 * tens) * outside, scale.decimals};
}

static_assert(shortest_decimal(std::bit_cast<std::uint32_t>(0.1F)).tens == 10'000'000);
static_assert(shortest_decimal(std::bit_cast<std::uint32_t>(0.1F)).decimals == 9);

} // namespace velm
