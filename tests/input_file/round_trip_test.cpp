#include "tests/input_file/exported.hpp"

#include <gtest/gtest.h>

namespace velm {
namespace {

TEST(ExportAfterImport, gives_the_bytes_of_random_files_back)
{
    for (unsigned seed = 1; seed <= 400; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const std::string bytes = random_file(random);
        const InputFile file = read_text(bytes);
        ASSERT_EQ(problems_of(file), "");
        ASSERT_TRUE(file.whole);
        ASSERT_EQ(file.bytes, bytes.size());
        ASSERT_EQ(exported(file.model), bytes);
        ASSERT_TRUE(read_text(exported(file.model)).model == file.model);
    }
}

TEST(ExportAfterImport, gives_the_bytes_of_the_golden_files_back)
{
    for (const std::filesystem::path& golden : golden_files()) {
        SCOPED_TRACE(golden);
        const std::string bytes = content_of(golden);
        const InputFile file = read_text(bytes);
        if (golden.stem() == "numbers") { // full of numbers that no field holds
            EXPECT_GT(file.gaps.size(), 20U);
            for (const Finding& problem : file.problems) {
                EXPECT_EQ(problem.text.find_first_not_of('*'), std::string::npos) << problem.message;
            }
        } else {
            EXPECT_EQ(problems_of(file), "");
            EXPECT_EQ(exported(file.model), bytes);
        }
    }
}

} // namespace
} // namespace velm
