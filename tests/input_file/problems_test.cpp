#include "tests/input_file/exported.hpp"

#include <algorithm>
#include <regex>
#include <set>

#include <gtest/gtest.h>

namespace velm {
namespace {

std::string everything()
{
    return content_of(std::filesystem::path(VELM_GOLDEN_FILES) / "everything.inp");
}

/// The golden file with the first `found` replaced; both may be lines' parts or several lines, with \n for their ends.
std::string changed(std::string found, std::string by)
{
    for (std::string* text : {&found, &by}) {
        for (std::size_t at = text->find('\n'); at != std::string::npos; at = text->find('\n', at + 2)) {
            text->insert(at, 1, '\r');
        }
    }
    std::string bytes = everything();
    const std::size_t at = bytes.find(found);
    EXPECT_NE(at, std::string::npos) << found;
    return bytes.replace(at, found.size(), by);
}

struct Change {
    std::string found;
    std::string by;
    std::string problems; ///< a line each
};

TEST(Problems, name_the_place_the_field_its_text_and_what_belongs_there)
{
    const Change changes[] = {
        // a field
        {"     365.5", "365.5     ",
         "file:5:1: system information, julian end time: '365.5     ' is a number written in another way, "
         "expected '     365.5'\n"},
        {"  1  8.25000  1.00000", " 1 8.25000  1.00000",
         "file:187:1: initial conditions, initial condition: ' 1 8.25000  1.00000' is spaced in another way, expected "
         "two "
         "blanks before each number, or one and a minus sign, and nothing after the last\n"},
        // a text
        {std::string("Mouth\0 ", 7), "Mouth  ",
         "file:26:11: segments, segment 2, name: 'Mouth                                   ' is a name without a NUL "
         "after it, "
         "expected one NUL, then blanks\n"},
        // a number that tells what a record is
        {"    7      3 ", "    7      4 ",
         "file:1:11: system information, version: ' 4' is not the number that belongs here, expected ' 3'\n"},
        {"     Flow Field   2", "     Flow Field   3",
         "file:45:19: flow paths, heading of the flow field: '     Flow Field   3' is another text, expected "
         "'     Flow Field   2'\n"},
        {"River discharge from head to s\n", "River discharge from head to S\n",
         "file:65:1: flow time series, description: 'River discharge from head to S' is not what an earlier section "
         "has, "
         "expected 'River discharge from head to s'\n"},
        // segments
        {"    2               Boundary Segment", "    0               Boundary Segment",
         "file:121:1: boundaries, system 1, boundary 2, segment: '    0' is not a segment of the model, expected a "
         "number from 1 to 3\n"},
        // types
        {"ISC #:     6 Instance:     1", "ISC #:    31 Instance:     1",
         "file:178:24: constants, instance: '    1' is not above the instance before it, expected a number above 1\n"},
        // counts
        {"    3               Number of Systems\n Diss", "    2               Number of Systems\n Diss",
         "file:113:1: boundaries, Number of Systems: '    2' is not the number that an earlier section has, expected "
         "3\n"
         "file:126:1: loads, banner: ' Ammonia\\x00                      ' is another record, of 31 characters, "
         "expected the record 'banner' of 78 characters\n"},
        {"    3\n     Initial conditions", "    4\n     Initial conditions",
         "file:181:1: initial conditions, number of segments: '    4' is not the number that an earlier section has, "
         "expected 3\n"
         "file:190:1: initial conditions, initial condition: '     Initial conditions for system  2 Silt\\x00          "
         "' is another record, of 53 characters, expected the record 'initial condition' of 3 numbers\n"},
        {"    7               Number of Flow Fields", "    8               Number of Flow Fields",
         "file:61:1: flow time series, Number of Flow Fields: '    8' is not the number that an earlier section has, "
         "expected 7\n"
         "file:87:1: flow time series, name of the flow field: ' ======================== Segment Dispersion/Exhange "
         "===========================...' is another record, of 88 characters, expected ' Flow Field 8\\x00            "
         "               '\n"},
        {"    2               Number of Constants", "    1               Number of Constants",
         "file:176:1: constants, Number of Constants: '1' is too low: there are more records of their kind, expected "
         "the "
         "number of records\n"},
    };
    for (const Change& change : changes) {
        const InputFile file = read_text(changed(change.found, change.by));
        EXPECT_EQ(problems_of(file), change.problems);
    }
}

TEST(Problems, that_editors_make_leave_all_values_sure)
{
    const std::string sound = everything();
    const Model model = read_text(sound).model;
    const auto without = [&](const std::regex& what, const char* by) { return std::regex_replace(sound, what, by); };
    const struct {
        std::string bytes;
        std::set<std::string_view> codes;
    } cases[] = {
        {"\xEF\xBB\xBF" + sound, {"V117"}},
        {sound.substr(0, sound.size() - 1), {"V106"}},
        {sound.substr(0, sound.size() - 2), {"V106"}},
        {without(std::regex("\r"), ""), {"V106"}},
        {without(std::regex(" +\r"), "\r"), {"V115"}},
        {without(std::regex(std::string(1, '\0')), " "), {"V116"}},
        {without(std::regex(std::string(1, '\0')), ""), {"V115", "V116"}},
        {without(std::regex(std::string("[\\x00 ]+\\r")), "\r"), {"V115", "V116"}},
    };
    for (const auto& [bytes, codes] : cases) {
        const InputFile file = read_text(bytes);
        std::set<std::string_view> found;
        for (const Finding& problem : file.problems) {
            found.insert(problem.rule->code);
        }
        EXPECT_EQ(found, codes) << problems_of(file);
        EXPECT_EQ(file.about_form, file.problem_count);
        EXPECT_TRUE(file.model == model) << problems_of(file);
    }
    EXPECT_EQ(read_text(sound.substr(0, sound.size() - 3)).problems.back().rule->code, "V110"); // a digit may be cut
}

TEST(Problems, are_all_collected_over_a_section_that_is_lost)
{
    std::string bytes = changed("    2               Number of inflows\n", "");
    bytes.replace(bytes.find("    3.0000"), 10, "    3,0000");
    const InputFile file = read_text(bytes);
    EXPECT_FALSE(file.whole);
    EXPECT_EQ(problems_of(file),
              "file:63:1: flow time series, Number of inflows: '      1.000000      0.028317  Flow Scale & Conversion "
              "Factors' is another record, of 61 characters, expected the record 'Number of inflows' of 37 characters\n"
              "file:136:1: loads, system 1, load scale factor: '      3,000000' is not a number, expected a number\n");
    EXPECT_EQ(file.model.systems.at(0).boundaries.items.size(), 2U); // read after the lost section
}

TEST(Problems, beyond_those_listed_are_counted)
{
    std::string bytes = everything();
    std::replace(bytes.begin(), bytes.end(), '.', ',');
    ReadOptions options;
    options.most_problems = 5;
    const InputFile file = read_text(bytes, options);
    EXPECT_EQ(file.problems.size(), 5U);
    EXPECT_GT(file.problem_count, 100U);
}

} // namespace
} // namespace velm
