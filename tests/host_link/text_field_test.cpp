#include "host_link/text_field.hpp"

#include <gtest/gtest.h>
#include <string>

namespace velm {
namespace {

using namespace std::string_view_literals;

template <std::size_t N>
Text<N> field(std::string_view characters)
{
    Text<N> text{};
    std::copy(characters.begin(), characters.end(), text.begin());
    return text;
}

template <std::size_t N>
std::string ended(const char (&characters)[N])
{
    Text<N - 1> text = field<N - 1>({characters, N - 1});
    end_with_nul(text);
    return {text.data(), text.size()};
}

TEST(TextField, is_ended_by_a_nul_behind_its_last_character_that_is_no_blank)
{
    EXPECT_EQ(ended("abc     "), "abc\0    "sv);
    EXPECT_EQ(ended("a c     "), "a c\0    "sv);
    EXPECT_EQ(ended("abcdefg "), "abcdefg\0"sv);
    EXPECT_EQ(ended("abcdefgh"), "abcdefgh"sv) << "no room";
    EXPECT_EQ(ended("        "), "\0       "sv);
    EXPECT_EQ(ended("ab\0     "), "ab\0\0    "sv) << "a NUL is no blank";
    EXPECT_EQ(ended("ab\0\0\0\0\0\0"), "ab\0\0\0\0\0\0"sv);
    EXPECT_EQ(ended("a\0b  \0  "), "a\0b  \0\0 "sv);
    EXPECT_EQ(ended("\xe4\xa0\t     "), "\xe4\xa0\t\0    "sv) << "nor is any other character";
}

TEST(TextField, is_reset_to_nuls_then_blanks)
{
    auto text = field<6>("abcdef");
    reset<4>(text);
    EXPECT_EQ(std::string_view(text.data(), 6), "\0\0\0\0  "sv);
    reset<6>(text);
    EXPECT_EQ(std::string_view(text.data(), 6), "\0\0\0\0\0\0"sv);
}

TEST(TextField, is_made_of_a_name_a_nul_and_blanks)
{
    EXPECT_EQ(nul_ended<6>("abc"), field<6>("abc\0  "sv));
    EXPECT_EQ(nul_ended<3>("abc"), field<3>("abc"));
    EXPECT_EQ(nul_ended<3>("abcd"), field<3>("abc"));
    EXPECT_EQ(nul_ended<2>(""), field<2>("\0 "sv));
}

} // namespace
} // namespace velm
