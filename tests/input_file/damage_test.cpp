#include "input_file/form_rules.hpp"
#include "model_check/datum_value.hpp"
#include "tests/input_file/exported.hpp"

#include <algorithm>
#include <cstdlib>
#include <numeric>

#include <gtest/gtest.h>

namespace velm {
namespace {

/// The model with values in its gaps that no field has room for.
Model with_overflows(const InputFile& file)
{
    Model model = file.model;
    for (const Address& gap : file.gaps) {
        const DatumValue value = value_of(model, gap);
        if (value.real != nullptr) {
            *value.real = 1e30F;
        } else if (value.integer != nullptr) {
            *value.integer = 1'000'000;
        }
    }
    return model;
}

/// Whatever is done to a file, its reader refuses it or says all of it: an export of what was read gives the same
/// damaged bytes. Where it says that the values are sure, they are the undamaged ones.
void expect_refused_or_said(const std::string& damaged, const Model& sound)
{
    const InputFile file = read_text(damaged);
    if (file.problem_count == file.asterisks) {
        ASSERT_TRUE(file.whole);
        ASSERT_EQ(exported(with_overflows(file)), damaged);
        return;
    }
    ASSERT_FALSE(file.problems.empty());
    ASSERT_LE(file.problems.size(), 100U);
    ASSERT_GT(file.problems.front().place.line, 0U);
    const bool all_sure = std::all_of(file.problems.begin(), file.problems.end(), [](const Finding& problem) {
        return problem.rule == &form_rules::other_label || problem.rule == &form_rules::line_end;
    });
    if (all_sure && file.problem_count == file.problems.size()) {
        ASSERT_TRUE(file.model == sound);
    }
}

void expect_refused_or_said(std::string bytes, const Model& sound, std::size_t at, unsigned mask)
{
    SCOPED_TRACE(testing::Message() << "byte " << at << ", mask " << mask);
    bytes[at] = static_cast<char>(static_cast<unsigned char>(bytes[at]) ^ mask);
    expect_refused_or_said(bytes, sound);
}

/// Another digit, another sign, no character at all; or whatever a byte can become.
std::vector<unsigned> masks()
{
    if (std::getenv("VELM_EVERY_DAMAGE") == nullptr) {
        return {0x01, 0x10, 0xFF};
    }
    std::vector<unsigned> all(255);
    std::iota(all.begin(), all.end(), 1U);
    return all;
}

class Damage : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(Damage, of_any_byte_is_refused_or_said)
{
    const std::string sound = content_of(GetParam());
    const Model model = read_text(sound).model;
    const std::vector<unsigned> all_masks = masks();
    for (std::size_t at = 0; at < sound.size(); ++at) {
        for (const unsigned mask : all_masks) {
            expect_refused_or_said(sound, model, at, mask);
            if (HasFatalFailure()) {
                return;
            }
        }
    }
}

TEST(DamageOfRandomModels, of_any_byte_is_refused_or_said)
{
    const std::vector<unsigned> all_masks = masks();
    std::mt19937 random(7);
    for (int round = 0; round < 20; ++round) {
        SCOPED_TRACE(round);
        const std::string sound = random_file(random);
        const Model model = read_text(sound).model;
        for (const unsigned mask : all_masks) {
            for (std::size_t at = random() % 50; at < sound.size(); at += 50) {
                expect_refused_or_said(sound, model, at, mask);
                if (HasFatalFailure()) {
                    return;
                }
            }
        }
    }
}

TEST_P(Damage, by_a_cut_at_any_byte_is_refused)
{
    const std::string sound = content_of(GetParam());
    for (std::size_t size = 0; size < sound.size(); ++size) {
        const InputFile file = read_text(sound.substr(0, size));
        const bool lacks_line_end_alone = size + 2 >= sound.size();
        ASSERT_EQ(file.about_form, lacks_line_end_alone ? 1U : file.about_form) << size;
        ASSERT_TRUE(lacks_line_end_alone || file.problem_count > file.about_form + file.asterisks) << size;
    }
}

TEST_P(Damage, by_a_line_that_is_lost_doubled_or_out_of_place_is_refused_or_said)
{
    const std::string sound = content_of(GetParam());
    const Model model = read_text(sound).model;
    for (std::size_t begin = 0; begin < sound.size();) {
        const std::size_t end = sound.find('\n', begin) + 1;
        const std::string before = sound.substr(0, begin);
        const std::string line = sound.substr(begin, end - begin);
        const std::string after = sound.substr(end);
        const std::size_t next = after.empty() ? 0 : after.find('\n') + 1;
        SCOPED_TRACE(line);
        expect_refused_or_said(before + after, model);
        expect_refused_or_said(before + line + line + after, model);
        expect_refused_or_said(before + after.substr(0, next) + line + after.substr(next), model);
        begin = end;
    }
}

INSTANTIATE_TEST_SUITE_P(golden, Damage, testing::ValuesIn(golden_files()),
                         [](const auto& file) { return file.param.stem().string(); });

} // namespace
} // namespace velm
