#include "tests/support/real_fields.hpp"

#include <gtest/gtest.h>
#include <limits>

namespace velm {
namespace {

constexpr float infinite = std::numeric_limits<float>::infinity();
constexpr float not_a_number = std::numeric_limits<float>::quiet_NaN();
constexpr float greatest = std::numeric_limits<float>::max();
constexpr float least = std::numeric_limits<float>::denorm_min();

struct FieldCase {
    RealField field;
    float value;
    std::string_view expected;
};

const FieldCase field_cases[] = {
    // plain values and exact halves, which go up
    {real_field<14, 6>("F14.6"), 0.0283168F, "      0.028317"},
    {real_field<6, 3>("F6.3"), 0.0625F, " 0.063"},
    {real_field<15, 2>("F15.2"), -0.375F, "          -0.38"},
    {real_field<5, 0>("F5.0"), 2.5F, "   3."},
    // eight digits are known; beyond them the eighth is dropped when it is 5 to 9 and kept when it is 0 to 4
    {real_field<10, 4>("F10.4"), 12345.678F, "12345.6800"},                   // 12345677|734375
    {real_field<20, 4>("F20.4"), 12345674.0F, "       12345674.0000"},        //
    {real_field<20, 4>("F20.4"), 12345675.0F, "       12345680.0000"},        //
    {real_field<10, 2>("F10.2"), 12345674.0F, "**********"},                  //
    {real_field<20, 4>("F20.4"), 123456789012345.0F, "123456800000000.0000"}, // 12345678|8103168
    {real_field<20, 4>("F20.4"), -123456789012345.0F, "********************"},
    {real_field<15, 12>("F15.12"), 0.01F, " 0.010000000000"}, // 0.0099999997|76: the eighth carries through
    // a carry that makes the number one digit longer
    {real_field<10, 4>("F10.4"), 9.99996F, "   10.0000"},
    {real_field<6, 3>("F6.3"), 99.9996F, "******"},
    {real_field<8, 6>("F8.6"), 0.9999999F, "1.000000"},
    {real_field<3, 2>("F3.2"), 0.996F, "***"},
    {real_field<5, 0>("F5.0"), 0.5F, "   1."},
    // the zero before the point goes when just its column lacks
    {real_field<8, 6>("F8.6"), -0.0001F, "-.000100"},
    {real_field<3, 2>("F3.2"), 0.25F, ".25"},
    {real_field<3, 2>("F3.2"), -0.25F, "***"},
    {real_field<3, 2>("F3.2"), 0.0F, ".00"},
    // too wide
    {real_field<8, 6>("F8.6"), 10.0F, "********"},
    {real_field<15, 5>("F15.5"), -12345678.0F, "-12345680.00000"},
    {real_field<15, 5>("F15.5"), -100000000.0F, "***************"},
    {real_field<10, 3>("F10.3"), 999999.9F, "999999.900"}, // stored as 999999.875: the eighth is 7
    {real_field<20, 4>("F20.4"), greatest, "********************"},
    // digits shown that are all 0 have no sign; what is too small to reach them is not rounded
    {real_field<10, 4>("F10.4"), -0.0F, "    0.0000"},
    {real_field<10, 4>("F10.4"), -0.00001F, "    0.0000"},
    {real_field<10, 4>("F10.4"), 0.00005F, "    0.0000"}, // stored as 0.0000499999987
    {real_field<10, 4>("F10.4"), -0.00006F, "   -0.0001"},
    {real_field<10, 4>("F10.4"), -least, "    0.0000"},
    {real_field<3, 2>("F3.2"), -0.001F, ".00"},
    {real_field<5, 0>("F5.0"), -0.4F, "   0."},
    // what is no finite number
    {real_field<6, 3>("F6.3"), -infinite, "  -INF"},
    {real_field<10, 4>("F10.4"), -not_a_number, "       NaN"},
    {real_field<3, 2>("F3.2"), infinite, "INF"},
    {real_field<3, 2>("F3.2"), -infinite, "***"},
    {real_field<2, 1>("F2.1"), -not_a_number, "**"},
};

TEST(RealField, shows_eight_digits_rounded_by_the_first_that_is_not_shown)
{
    for (const FieldCase& c : field_cases) {
        EXPECT_EQ(c.field.fast(c.value), c.expected) << c.field.name << " of " << c.value << ", compiled";
        EXPECT_EQ(c.field.in_full(c.value), c.expected) << c.field.name << " of " << c.value << ", in full";
    }
}

struct FreeCase {
    float value;
    std::string_view expected;
};

const FreeCase free_cases[] = {
    {0.0F, "0.000000"},
    {-0.0F, "0.000000"},
    {-0.5F, "-0.500000"},
    {12.5F, "12.5000"},
    {86400.0F, "86400.0"},
    {999999.4375F, "999999."},
    // the form is chosen after rounding to seven places, the places shown after rounding to six digits
    {0.09999996F, "0.100000"},
    {0.09999995F, "9.999995E-02"}, // stored as 0.09999994|93
    {9.999997F, "10.0000"},
    {99999.95F, "100000."},
    {999999.5F, "9.999995E+05"},
    {999999.9375F, "9.999999E+05"},
    // the exponent form, its own carry included
    {0.01F, "1.000000E-02"}, // stored as 0.0099999997|76
    {-3.0E12F, "-3.000000E+12"},
    {greatest, "3.402823E+38"},
    {1.17549435e-38F, "1.175494E-38"},
    {-least, "-1.401298E-45"},
    {-infinite, "-INF"},
    {-not_a_number, "NaN"},
};

TEST(FreeReal, has_six_digits_and_a_point_or_seven_and_an_exponent)
{
    for (const FreeCase& c : free_cases) {
        EXPECT_EQ(free_real(c.value), c.expected) << c.value;
        EXPECT_EQ(shows_minus(c.value), c.expected[0] == '-') << c.value;
    }
}

} // namespace
} // namespace velm
