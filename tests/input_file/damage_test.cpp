#include "tests/input_file/exported.hpp"

#include <algorithm>

#include <gtest/gtest.h>

namespace velm {
namespace {

/// Whatever is done to a file, its reader refuses it or says all of it: an export of what was read gives the same
/// damaged bytes.
void expect_refused_or_said(const std::string& damaged)
{
    const InputFile file = read_text(damaged);
    if (file.problem_count != 0) {
        ASSERT_FALSE(file.problems.empty());
        ASSERT_LE(file.problems.size(), 100U);
        ASSERT_GT(file.problems.front().place.line, 0U);
        return;
    }
    ASSERT_TRUE(file.whole);
    ASSERT_EQ(exported(file.model), damaged);
}

class Damage : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(Damage, of_any_byte_is_refused_or_said)
{
    const std::string sound = bytes_of(GetParam());
    for (std::size_t at = 0; at < sound.size(); ++at) {
        for (const unsigned mask : {0x01U, 0x10U, 0xFFU}) { // another digit, another sign, no character at all
            SCOPED_TRACE(testing::Message() << "byte " << at << ", mask " << mask);
            std::string damaged = sound;
            damaged[at] = static_cast<char>(static_cast<unsigned char>(damaged[at]) ^ mask);
            expect_refused_or_said(damaged);
            if (HasFatalFailure()) {
                return;
            }
        }
    }
}

TEST_P(Damage, by_a_cut_at_any_byte_is_refused)
{
    const std::string sound = bytes_of(GetParam());
    for (std::size_t size = 0; size < sound.size(); ++size) {
        const InputFile file = read_text(sound.substr(0, size));
        const auto costs_values = [](const InputProblem& problem) { return !is_about_form(problem.kind); };
        ASSERT_TRUE(std::any_of(file.problems.begin(), file.problems.end(), costs_values)) << size;
    }
}

TEST_P(Damage, by_a_line_that_is_lost_doubled_or_out_of_place_is_refused_or_said)
{
    const std::string sound = bytes_of(GetParam());
    for (std::size_t begin = 0; begin < sound.size();) {
        const std::size_t end = sound.find('\n', begin) + 1;
        const std::string before = sound.substr(0, begin);
        const std::string line = sound.substr(begin, end - begin);
        const std::string after = sound.substr(end);
        const std::size_t next = after.empty() ? 0 : after.find('\n') + 1;
        SCOPED_TRACE(line);
        expect_refused_or_said(before + after);
        expect_refused_or_said(before + line + line + after);
        expect_refused_or_said(before + after.substr(0, next) + line + after.substr(next));
        begin = end;
    }
}

INSTANTIATE_TEST_SUITE_P(golden, Damage, testing::ValuesIn(golden_files()),
                         [](const auto& file) { return file.param.stem().string(); });

} // namespace
} // namespace velm
