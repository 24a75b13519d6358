#include "session/line_text.hpp"
#include "session/real_text.hpp"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>

namespace velm {
namespace {

std::string real_text(std::uint32_t bits)
{
    std::array<char, real_room> text{};
    return {text.data(), put_real(text.data(), std::bit_cast<float>(bits))};
}

/// By the standard library, which finds the shortest decimals by another method.
std::string expected_real_text(std::uint32_t bits)
{
    const auto value = std::bit_cast<float>(bits);
    const float magnitude = std::fabs(value);
    const bool without_exponent = magnitude == 0 || (magnitude >= 0x1p-13F && magnitude < 0x1p24F);
    std::array<char, 64> text{};
    char* const limit = text.data() + text.size();
    char* const end = without_exponent ? std::to_chars(text.data(), limit, value, std::chars_format::fixed).ptr
                                       : std::to_chars(text.data(), limit, value).ptr;
    std::array<char, 9> hexadecimal{};
    (void)std::snprintf(hexadecimal.data(), hexadecimal.size(), "%08x", bits);
    return '"' + std::string(text.data(), end) + ' ' + hexadecimal.data() + '"';
}

TEST(LineText, HoldsTheShortestDecimalsOfAReal)
{
    constexpr std::uint64_t patterns = std::uint64_t{1} << 32;
    constexpr std::uint64_t step = 4099; // a prime: all exponents, more than 2,000 fractions of each
    for (std::uint64_t bits = 0; bits < patterns; bits += step) {
        ASSERT_EQ(real_text(static_cast<std::uint32_t>(bits)), expected_real_text(static_cast<std::uint32_t>(bits)));
    }
}

/// Where binary and decimal places, forms and ways to compute meet.
TEST(LineText, HoldsTheShortestDecimalsBesidePowers)
{
    const auto check_around = [](float value) {
        const auto bits = std::bit_cast<std::uint32_t>(value);
        for (std::uint32_t beside = bits - 50; beside <= bits + 50; ++beside) {
            EXPECT_EQ(real_text(beside), expected_real_text(beside));
        }
    };
    for (int exponent = -126; exponent < 128; ++exponent) {
        check_around(std::ldexp(1.0F, exponent));
    }
    for (int exponent = -37; exponent <= 38; ++exponent) {
        for (int digit = 1; digit <= 9; ++digit) {
            check_around(static_cast<float>(digit * std::pow(10.0, exponent)));
        }
    }
}

TEST(LineText, HoldsWholeNumbers)
{
    using Limits = std::numeric_limits<std::int64_t>;
    const auto check = [](std::int64_t number) {
        std::array<char, number_room> text{};
        EXPECT_EQ(std::string(text.data(), put_integer(text.data(), number)), std::to_string(number));
    };
    for (std::int64_t power = 1; power <= Limits::max() / 10; power *= 10) {
        for (const std::int64_t number : {power - 1, power, power + 1, power * 9 + power / 9}) {
            check(number);
            check(-number);
        }
    }
    check(Limits::max());
    check(Limits::min());
}

} // namespace
} // namespace velm
