#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace velm {

/// A magnitude as 0.D1D2D3D4D5D6D7D8 times ten to the power `exponent`: the first eight significant
/// digits of a single-precision value, cut off and not rounded. D1 is not 0, so `digits` is from 10,000,000
/// to 99,999,999; for zero both members are 0.
///
///     12345.678f is stored as 12345.677734375: digits 12345677, exponent 5
struct DecimalDigits {
    std::uint32_t digits = 0;
    std::int32_t exponent = 0;
};

inline constexpr std::uint32_t eight_digit_limit = 100'000'000; ///< the first number of nine digits

/// The parts of a single-precision pattern.
namespace single {
inline constexpr std::uint32_t sign_bit = 0x8000'0000U;
inline constexpr std::uint32_t magnitude_bits = 0x7fff'ffffU;
inline constexpr std::uint32_t infinity = 0x7f80'0000U; ///< magnitudes above it are not numbers
inline constexpr std::uint32_t fraction_bits = 0x007f'ffffU;
inline constexpr std::uint32_t leading_bit = 0x0080'0000U; ///< implied before the fraction of a normal number
inline constexpr int fraction_width = 23;
inline constexpr int exponent_bias = 150; ///< of the 24-bit significand taken as an integer
} // namespace single

namespace detail {

__extension__ using Product = unsigned __int128;

/// How to get from a significand to its digits, for one binary exponent.
///
/// A value is m * 2^e with m from 2^23 up to 2^24. Let k be the decimal exponent of the smallest of them,
/// 2^23 * 2^e. Then
///
///     x = m * 2^e * 10^(8-k)        is from 10^7 up to 2 * 10^8,
///
/// and its whole part is the eight digits wanted, or nine of which the last is dropped. The multiplier is
/// 2^e * 10^(8-k), scaled by a power of two to 64 significant bits and rounded up, so that
///
///     x = m * multiplier / 2^(24 + shift)        is one 64 by 64 bit product, of which the upper half is enough.
///
/// Rounding up adds less than 2^-35 to x (m < 2^24, the multiplier's last bit is worth 2^-59 or less), so the
/// whole part is right unless x lies less than that below a whole number. No single-precision value
/// does: tests/exhaustive compares all 2^31 magnitudes with exact big-integer arithmetic, and finds the nearest
/// miss to be 2^-29.4. An x that is a whole number is never reached from below, for the error is never negative.
///
/// Worked: 1.0f is 2^23 * 2^-23, k = 1, x = 2^23 * 2^-23 * 10^7 = 10,000,000 exactly.
struct DigitScale {
    std::uint64_t multiplier = 0;
    std::int32_t shift = 0;    ///< after the upper half of the product has been taken, 35 to 40
    std::int32_t exponent = 0; ///< k
};

/// A power of ten as significand * 2^exponent, 64 bits, rounded up.
struct PowerOfTen {
    std::uint64_t significand = 0;
    int exponent = 0;
};

/// 10^q for q from 0 to 52, multiplied out exactly in words of 32 bits, then cut to its 64 upper bits.
constexpr PowerOfTen large_power_of_ten(int q)
{
    std::array<std::uint32_t, 6> words{1}; // 10^52 has 173 bits
    for (int i = 0; i < q; ++i) {
        std::uint64_t carry = 0;
        for (std::uint32_t& word : words) {
            carry += std::uint64_t{word} * 10;
            word = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
    }
    int bit = 191;
    auto bit_at = [&](int at) { return (words[static_cast<std::size_t>(at / 32)] >> (at % 32)) & 1U; };
    while (bit_at(bit) == 0) {
        --bit;
    }
    PowerOfTen power{0, bit - 63};
    bool inexact = false;
    for (int at = bit; at >= 0; --at) {
        if (at > bit - 64) {
            power.significand |= std::uint64_t{bit_at(at)} << (at - bit + 63);
        } else {
            inexact = inexact || bit_at(at) != 0;
        }
    }
    power.significand += inexact ? 1 : 0;
    return power;
}

/// 10^q for q from -31 to -1, by long division of a power of two by 10^-q, bit after bit.
constexpr PowerOfTen small_power_of_ten(int q)
{
    Product divisor = 1;
    for (int i = 0; i < -q; ++i) {
        divisor *= 10;
    }
    Product remainder = 1;
    PowerOfTen power{0, 0};
    while ((power.significand >> 63) == 0) {
        remainder *= 2;
        --power.exponent;
        power.significand <<= 1;
        if (remainder >= divisor) {
            remainder -= divisor;
            power.significand |= 1;
        }
    }
    ++power.significand; // no power of ten below 1 is exact in binary
    return power;
}

inline constexpr int smallest_biased_exponent = -22; ///< of the least subnormal, made 24 bits wide
inline constexpr int largest_biased_exponent = 254;

constexpr DigitScale digit_scale(int biased_exponent)
{
    const int binary_exponent = biased_exponent - single::exponent_bias;
    // 78913 / 2^18 is log10(2) to seven places, enough for exponents below 1,000
    const int decimal_exponent = (((binary_exponent + single::fraction_width) * 78913) >> 18) + 1;
    const int q = 8 - decimal_exponent;
    const PowerOfTen power = q >= 0 ? large_power_of_ten(q) : small_power_of_ten(q);
    // m is shifted up by 40 bits and the product down by 64: 24 bits of the scale are taken care of
    return {power.significand, -(power.exponent + binary_exponent) - 24, decimal_exponent};
}

inline constexpr auto digit_scales = [] {
    std::array<DigitScale, largest_biased_exponent - smallest_biased_exponent + 1> scales{};
    for (std::size_t i = 0; i < scales.size(); ++i) {
        scales[i] = digit_scale(static_cast<int>(i) + smallest_biased_exponent);
    }
    return scales;
}();

static_assert(std::ranges::all_of(digit_scales,
                                  [](const DigitScale& scale) {
                                      return scale.shift >= 35 && scale.shift <= 40 && (scale.multiplier >> 63) == 1;
                                  }),
              "the error bound above needs these scales");

} // namespace detail

/// The digits of a finite magnitude, given as the pattern's lower 31 bits (below single::infinity).
constexpr DecimalDigits decimal_digits(std::uint32_t magnitude) noexcept
{
    int biased_exponent = static_cast<int>(magnitude >> single::fraction_width);
    std::uint32_t significand = magnitude & single::fraction_bits;
    if (biased_exponent != 0) {
        significand |= single::leading_bit;
    } else if (significand != 0) {
        const int places = std::countl_zero(significand) - 8;
        significand <<= places;
        biased_exponent = 1 - places;
    } else {
        return {};
    }
    const detail::DigitScale& scale =
        detail::digit_scales[static_cast<std::size_t>(biased_exponent - detail::smallest_biased_exponent)];
    const auto product = static_cast<detail::Product>(std::uint64_t{significand} << 40) * scale.multiplier;
    const auto digits = static_cast<std::uint32_t>(static_cast<std::uint64_t>(product >> 64) >> scale.shift);
    if (digits >= eight_digit_limit) {
        return {digits / 10, scale.exponent + 1};
    }
    return {digits, scale.exponent};
}

static_assert(decimal_digits(std::bit_cast<std::uint32_t>(12345.678F)).digits == 12345677);
static_assert(decimal_digits(std::bit_cast<std::uint32_t>(12345.678F)).exponent == 5);
static_assert(decimal_digits(1).digits == 14012984 && decimal_digits(1).exponent == -44); // 2^-149
static_assert(decimal_digits(single::infinity - 1).digits == 34028234);                   // 2^128 - 2^104, 39 digits

} // namespace velm
