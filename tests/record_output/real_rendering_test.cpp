#include "record_output/field_rendering.hpp"
#include "tests/support/exact_decimal.hpp"
#include "tests/support/real_fields.hpp"

#include <bit>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

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

/// Compiled for shapes that no record has: without decimals, with more of them than columns, of more than 20 columns.
constexpr RealField other_fields[] = {real_field<1, 1>("F1.1"),     real_field<3, 2>("F3.2"),
                                      real_field<5, 0>("F5.0"),     real_field<10, 2>("F10.2"),
                                      real_field<15, 12>("F15.12"), real_field<21, 4>("F21.4")};

void compare(std::uint32_t bits)
{
    const auto value = std::bit_cast<float>(bits);
    const exact::Digits digits = exact::digits_of(bits);
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

TEST(RealOracle, agrees_for_fields_of_any_width_and_decimals)
{
    for (std::uint32_t bits = 0; bits < 0xff80'0000U; bits += 0x0009'7531U) {
        const auto value = std::bit_cast<float>(bits);
        const exact::Digits digits = exact::digits_of(bits);
        for (const RealField& field : other_fields) {
            ASSERT_EQ(field.fast(value), exact::real_field(field.width, field.decimals, bits, digits).view())
                << field.name << ", pattern " << std::hex << bits;
        }
        for (std::size_t width = 1; width <= 25; ++width) {
            for (std::size_t decimals = 0; decimals <= 12; ++decimals) {
                const RealField field{"", width, decimals, nullptr};
                ASSERT_EQ(field.in_full(value), exact::real_field(width, decimals, bits, digits).view())
                    << width << '.' << decimals << ", pattern " << std::hex << bits;
            }
        }
    }
}

TEST(RealOracle, agrees_with_examples_worked_by_hand)
{
    const struct {
        RealField field;
        float value;
        std::string_view expected;
    } examples[] = {
        {real_field<6, 3>("F6.3"), 0.0625F, " 0.063"},                     // an exact half goes up
        {real_field<10, 4>("F10.4"), 12345.678F, "12345.6800"},            // 12345677|734375: the eighth is the last
        {real_field<20, 4>("F20.4"), 12345674.0F, "       12345674.0000"}, // kept when it is 0 to 4
        {real_field<10, 4>("F10.4"), 9.99996F, "   10.0000"},              // a carry makes the number longer
        {real_field<8, 6>("F8.6"), -0.0001F, "-.000100"},                  // no room for the zero
        {real_field<10, 4>("F10.4"), -0.00001F, "    0.0000"},             // digits that are all 0 have no sign
        {real_field<6, 3>("F6.3"), -std::numeric_limits<float>::infinity(), "  -INF"},
        {real_field<8, 6>("F8.6"), 10.0F, "********"},
    };
    for (const auto& row : examples) {
        EXPECT_EQ(row.field.fast(row.value), row.expected) << row.field.name;
        EXPECT_NO_FATAL_FAILURE(compare(std::bit_cast<std::uint32_t>(row.value)));
    }
    EXPECT_EQ(free_real(86400.0F), "86400.0");
    EXPECT_EQ(free_real(0.09999996F), "0.100000"); // the form is chosen after rounding to seven places
    EXPECT_EQ(free_real(0.01F), "1.000000E-02");   // stored as 0.0099999997|76
    EXPECT_EQ(free_real(999999.9375F), "9.999999E+05");
}

TEST(Integer, is_as_the_standard_library_shows_it_or_asterisks)
{
    std::vector<std::int32_t> numbers = {0, 1, -1, 2'147'483'647, -2'147'483'647 - 1};
    for (std::int32_t power = 10; power <= 1'000'000'000 && power > 0; power = power < 1'000'000'000 ? power * 10 : 0) {
        numbers.insert(numbers.end(), {power - 1, power, 1 - power, -power});
    }
    for (const std::int32_t number : numbers) {
        const std::string shown = std::to_string(number);
        char text[integer_room];
        EXPECT_EQ(std::string(text, render_integer(text, number)), shown);
        char field[13] = {};
        render_integer_field<5>(field, number);
        EXPECT_EQ(std::string(field, 5), shown.size() > 5 ? "*****" : std::string(5 - shown.size(), ' ') + shown);
        render_integer_field<11>(field, number);
        EXPECT_EQ(std::string(field, 11), std::string(11 - shown.size(), ' ') + shown);
    }
}

} // namespace
} // namespace velm
