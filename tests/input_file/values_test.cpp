#include "input_file/fields/real_text.hpp"
#include "input_file/fields/text_content.hpp"
#include "tests/input_file/exported.hpp"

#include <bit>
#include <cmath>

#include <gtest/gtest.h>

namespace velm {
namespace {

struct RowText {
    const char* text;
    RealTextKind kind;
    float value;
};

TEST(RealText, of_a_row_is_the_value_that_is_written_so)
{
    using enum RealTextKind;
    const RowText rows[] = {
        {"0.000000", exact, 0},
        {"-0.500000", exact, -0.5F},
        {"86400.0", exact, 86400},
        {"999999.", exact, 999999},
        {"9.999995E+05", exact, 999999.5F},
        {"1.401298E-45", exact, 1e-45F},
        {"3.402823E+38", exact, std::nextafter(3.402823e38F, 0.0F)}, // the nearest value, 3.40282306E+38, is it too
        {"0.5", other_form, 0.5F},
        {"-0.000000", other_form, 0},
        {"5.0D-02", other_form, 0.05F},
        {"123456.7", other_form, 123456.7F},
        {"3.402824E+38", no_single, 0},
        {"1.000000E-46", no_single, 0},
        {"1.000000E-999", no_single, 0},
        {"-INF", not_finite, 0},
        {"NaN", not_finite, 0},
        {"-NaN", no_number, 0},
        {"1.5.0", no_number, 0},
        {"-", no_number, 0},
        {"1E", no_number, 0},
    };
    for (const RowText& row : rows) {
        const RealText real = real_in_row(row.text);
        EXPECT_EQ(real.kind, row.kind) << row.text;
        if (row.kind != exact || std::abs(row.value) < 1e38F) {
            EXPECT_EQ(real.value, row.value) << row.text;
        }
        EXPECT_FALSE(std::signbit(real.value) && real.value == 0) << row.text;
    }
}

TEST(RealText, of_a_field_may_be_that_of_a_neighbour_of_the_nearest_value)
{
    // 12345.674 is nearest to 12345.673828125, of which eight digits are 12345.673
    const RealText real = real_in_field("12345.6740", 4);
    EXPECT_EQ(real.kind, RealTextKind::exact);
    EXPECT_EQ(real.value, std::nextafter(12345.674F, 1e9F));
    EXPECT_EQ(real_in_field("12345.6789", 4).kind, RealTextKind::other_form);
    EXPECT_EQ(real_in_field("**********", 4).kind, RealTextKind::asterisks);
    EXPECT_EQ(real_in_field("          ", 4).kind, RealTextKind::no_number);
    EXPECT_EQ(real_in_field("*****    1", 4).kind, RealTextKind::no_number);
    EXPECT_EQ(real_in_field("-.000100", 6).value, -0.0001F);
}

TEST(RealText, is_read_back_for_single_precision_values_of_every_exponent)
{
    for (std::uint64_t bits = 0; bits < 0x1'0000'0000U; bits += 99'991) {
        const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(bits));
        if (std::isfinite(value)) {
            const std::string text = row_text(value);
            const RealText real = real_in_row(text);
            ASSERT_EQ(real.kind, RealTextKind::exact) << text;
            ASSERT_EQ(row_text(real.value), text);
            const std::string field = field_text(value, 20, 4);
            ASSERT_TRUE(field[0] == '*' || real_in_field(field, 4).kind == RealTextKind::exact) << field;
        }
    }
}

TEST(TextContent, is_what_a_host_must_have_given)
{
    const auto field = [](std::string text, std::size_t width, char fill = ' ') {
        text.resize(width, fill);
        return text;
    };
    using namespace std::string_literals;
    EXPECT_EQ(text_before_nul(field("abc\0"s, 30)), "abc");
    EXPECT_EQ(text_before_nul(field("\0"s, 30)), "");
    EXPECT_EQ(text_before_nul(field("abc", 30, '\0')), field("abc", 29, '\0'));
    EXPECT_EQ(text_before_nul(field("abc\0\0"s, 30)), "abc\0"s);
    EXPECT_EQ(text_before_nul(field("", 30, 'x')), field("", 30, 'x'));
    EXPECT_EQ(text_before_nul(field("abc", 29) + '\0'), field("abc", 29) + '\0');
    EXPECT_EQ(text_before_nul(field("abc", 30)), std::nullopt);
    EXPECT_EQ(text_before_nul(field("abc \0"s, 30)), std::nullopt);
    EXPECT_EQ(text_before_nul_or_cut(field("abc\0"s, 40)), "abc");
    EXPECT_EQ(text_before_nul_or_cut(field("abc", 40)), field("abc", 40) + '.');
}

TEST(Constants, with_any_bytes_in_their_description_come_back)
{
    for (const std::string& description : {std::string(45, 'x'), std::string(40, ' ') + "y", std::string(20, '\0'),
                                           std::string(38, ' ') + '\0', std::string("a \0", 3)}) {
        Model model;
        model.constant_types = {{1, {{true, description, 1}}}};
        const std::string bytes = exported(model);
        const InputFile file = read_text(bytes);
        EXPECT_EQ(problems_of(file), "");
        EXPECT_EQ(exported(file.model), bytes);
    }
}

TEST(Counts, that_do_not_fit_their_field_are_those_of_the_records)
{
    Model model;
    model.segments.resize(1);
    model.systems.resize(1);
    model.systems[0].initial_conditions.resize(1);
    model.systems[0].boundaries.items = {{1, {std::vector<float>(100'000, 0.5F), std::vector<float>(100'000, 2)}},
                                         {1, {{1}, {2}}}};
    const std::string bytes = exported(model);
    const InputFile file = read_text(bytes);
    EXPECT_EQ(problems_of(file), "");
    EXPECT_TRUE(file.model == model);

    std::string too_few = bytes;
    const std::size_t pairs = too_few.find("    1               Number of Time Pairs");
    too_few.replace(pairs, 5, "*****");
    EXPECT_EQ(
        problems_of(read_text(too_few)),
        "file:100041:1: boundaries, Number of Time Pairs: '*****' hides the count, but only 1 follow, expected 1\n");
}

TEST(Places, are_found_for_data_of_every_kind)
{
    const std::filesystem::path file = std::filesystem::path(VELM_GOLDEN_FILES) / "everything.inp";
    const struct {
        Address address;
        Place place;
    } cases[] = {
        {{"model", "skip_time_2", {1}}, {4, 21}},
        {{"system", "tag", {2}}, {17, 1}},
        {{"segment", "slope", {2}}, {30, 111}},
        {{"flow_path", "fraction", {1, 1, 2}}, {41, 11}},
        {{"flow_value", "value", {6, 1, 1}}, {84, 12}},
        {{"exchange_pair", "area", {1, 1, 2}}, {95, 9}},
        {{"boundary_value", "time", {1, 1, 2}}, {120, 3}},
        {{"time_function_type", "isc", {2}}, {158, 6}},
        {{"parameter_value", "value", {2, 1, 3}}, {174, 45}},
        {{"constant", "description", {1, 1}}, {177, 65}},
        {{"initial_condition", "dissolved_fraction", {3, 2}}, {204, 20}},
        {{"boundary_value", {}, {1, 1}}, {118, 1}}, // the number of its pairs
        {{"segment", "slope", {4}}, {0, 0}},
    };
    std::vector<Place> places(std::size(cases));
    ReadOptions options;
    options.on_field = [&](const FieldText& field) {
        for (std::size_t i = 0; i < places.size(); ++i) {
            places[i] = field.address == cases[i].address ? field.place : places[i];
        }
    };
    (void)read_input_file(file, options);
    for (std::size_t i = 0; i < places.size(); ++i) {
        EXPECT_EQ(places[i], cases[i].place) << in_words(cases[i].address);
    }
}

} // namespace
} // namespace velm
