#include "tests/support/exact_decimal.hpp"
#include "tests/support/real_fields.hpp"

#include <bit>
#include <gtest/gtest.h>

namespace velm {
namespace {

/// Significands of one exponent: the ends, runs of ones and single bits, then many without a pattern.
std::uint32_t fraction_number(std::uint32_t i)
{
    if (i < 24) {
        return (1U << i) - 1;
    }
    if (i < 48) {
        return 0x800000U - (1U << (i - 24));
    }
    const std::uint64_t mixed = (i * 0x9E37'79B9'7F4A'7C15U) ^ (i * 0xBF58'476D'1CE4'E5B9U >> 29);
    return static_cast<std::uint32_t>(mixed >> 37) & 0x7fffffU;
}

void compare(std::uint32_t bits)
{
    const auto value = std::bit_cast<float>(bits);
    const exact::Digits digits =
        exact::not_finite(bits).empty() ? exact::digits_of(bits & 0x7fffffffU) : exact::Digits{};
    for (const RealField& field : real_fields_in_use) {
        const exact::Text expected = exact::real_field(field.width, field.decimals, bits, digits);
        ASSERT_EQ(field.fast(value), expected.view()) << field.name << ", pattern " << std::hex << bits;
        ASSERT_EQ(field.in_full(value), expected.view()) << field.name << " in full, pattern " << std::hex << bits;
    }
    const exact::Text expected = exact::free_real(bits, digits);
    ASSERT_EQ(free_real(value), expected.view()) << "pattern " << std::hex << bits;
    ASSERT_EQ(shows_minus(value), expected.view()[0] == '-') << "pattern " << std::hex << bits;
}

TEST(RealOracle, agrees_for_every_exponent_and_sign_and_many_significands)
{
    for (std::uint32_t exponent = 0; exponent <= 255; ++exponent) {
        for (std::uint32_t i = 0; i < 2048; ++i) {
            const std::uint32_t magnitude = (exponent << 23) | fraction_number(i);
            ASSERT_NO_FATAL_FAILURE(compare(magnitude));
            ASSERT_NO_FATAL_FAILURE(compare(magnitude | 0x80000000U));
        }
    }
}

/// Where rounding, carries and the choice of form change: the singles around decimal numbers.
TEST(RealOracle, agrees_around_powers_of_ten_and_halves_of_the_places_shown)
{
    for (int power = -12; power <= 16; ++power) {
        for (const char* digits : {"1", "5", "9.5", "9.9995", "9.99995", "9.999995", "9.9999995"}) {
            const std::string middle = std::string(digits) + 'e' + std::to_string(power);
            const auto bits = std::bit_cast<std::uint32_t>(std::strtof(middle.c_str(), nullptr));
            for (std::uint32_t at = bits - 200; at <= bits + 200; ++at) {
                ASSERT_NO_FATAL_FAILURE(compare(at));
                ASSERT_NO_FATAL_FAILURE(compare(at | 0x80000000U));
            }
        }
    }
}

} // namespace
} // namespace velm
