#include "record_output/layout.hpp"

#include <gtest/gtest.h>

namespace velm {
namespace {

struct MistakeCase {
    std::string_view layout;
    LayoutMistake mistake;
    std::size_t offset;
};

const MistakeCase mistakes[] = {
    {"", LayoutMistake::no_opening_parenthesis, 0},
    {" I5", LayoutMistake::no_opening_parenthesis, 1},
    {"(I5", LayoutMistake::no_closing_parenthesis, 3},
    {"(2(I5)", LayoutMistake::no_closing_parenthesis, 6},
    {"(I5))", LayoutMistake::text_after_closing_parenthesis, 4},
    {"()", LayoutMistake::item_expected, 1},
    {"(I5,)", LayoutMistake::item_expected, 4},
    {"(I5 I5)", LayoutMistake::comma_or_closing_parenthesis_expected, 4},
    {"(5X/)", LayoutMistake::comma_or_closing_parenthesis_expected, 3},
    {"(I5,'a'x)", LayoutMistake::comma_or_closing_parenthesis_expected, 7},
    {"(E12.4)", LayoutMistake::unknown_descriptor, 1},
    {"(I5,2Q5)", LayoutMistake::unknown_descriptor, 5},
    {"(I)", LayoutMistake::width_expected, 2},
    {"(A,I5)", LayoutMistake::width_expected, 2},
    {"(I0)", LayoutMistake::width_of_zero, 2},
    {"(F10)", LayoutMistake::point_and_decimals_expected, 4},
    {"(F10.)", LayoutMistake::point_and_decimals_expected, 5},
    {"(X)", LayoutMistake::count_before_x_expected, 1},
    {"(I5, 0I5)", LayoutMistake::count_of_zero, 5},
    {"(2'abc')", LayoutMistake::count_before_literal, 2},
    {"(I5,'abc)", LayoutMistake::literal_without_end, 4},
    {"('it''s)", LayoutMistake::literal_without_end, 1},
    {"(A99999)", LayoutMistake::number_too_large, 6},
    {"(65I1)", LayoutMistake::too_many_items, 5},
    {"(9(9999(2X)))", LayoutMistake::too_many_items, 10},
};

TEST(Layout, tells_the_first_mistake_and_its_offset)
{
    for (const MistakeCase& c : mistakes) {
        const Layout layout = read_layout(c.layout);
        EXPECT_EQ(static_cast<int>(layout.mistake), static_cast<int>(c.mistake)) << c.layout;
        EXPECT_EQ(layout.mistake_offset, c.offset) << c.layout;
    }
}

struct SoundCase {
    std::string_view layout;
    std::size_t width;
    std::size_t values;
};

const SoundCase sound_layouts[] = {
    {"(I5,15x,'Number of Segments')", 38, 1},
    {"(6I5,5x,'Start date and time')", 54, 6},
    {"(4(I5),16(F15.5))", 260, 20},
    {"(2(I3,1X),f8.6,1x,F6.3)", 23, 4},
    {"('ISC #: ',I5,' Instance: ',I3,' Scale: ',F10.4,' Description:',A40 )", 97, 4},
    {"(A512)", 512, 1},
    {"('a' ,   'b', '(2X,''c'')')", 10, 0},
    {"(2(I2,2(I3,'x'),1X))", 22, 6},
    {"(F1.1,F21.4,F2.9)", 24, 3},
    {" ( 2 i 5 , 1 0 x ) ", 20, 2},
};

TEST(Layout, knows_the_width_of_the_line_and_the_number_of_values)
{
    for (const SoundCase& c : sound_layouts) {
        const Layout layout = read_layout(c.layout);
        EXPECT_EQ(static_cast<int>(layout.mistake), 0) << c.layout;
        EXPECT_EQ(layout.width, c.width) << c.layout;
        EXPECT_EQ(layout.value_count, c.values) << c.layout;
    }
}

} // namespace
} // namespace velm
