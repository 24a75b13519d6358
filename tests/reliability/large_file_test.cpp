// An export of more than 4 GiB: a size that 32 bits do not hold.

#include "Utilities/Export/velm_export/sections.hpp"
#include "tests/support/own_call_forms.hpp"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>

namespace velm {
namespace {

namespace fs = std::filesystem;

/// One system with this many boundaries of 100,000 pairs; nothing else.
void export_boundaries(std::int32_t boundaries, const fs::path& path)
{
    own_host = [&](const OwnRequest& request) {
        const std::string_view key = request.key.name;
        if (key == "GFILENAME") {
            std::strcpy(&request.value<char>(0), path.c_str());
        } else if (key == "GNUMSYS") {
            request.value<std::int32_t>(0) = 1;
        } else if (key == "GNOBC") {
            request.value<std::int32_t>(1) = boundaries;
        } else if (key == "GNBFP") {
            request.value<std::int32_t>(2) = 100'000;
        }
    };
    importexport();
}

std::string last_bytes(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    file.seekg(-1000, std::ios::end);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(LargeFile, beyond_4_GiB_is_whole)
{
    const fs::path path = fs::current_path() / "velm_large_file_test.inp";
    if (fs::space(path.parent_path()).available < 5'000'000'000) {
        GTEST_SKIP() << "5 GB of space are needed in " << path.parent_path();
    }
    export_boundaries(1, path);
    const std::uintmax_t small = fs::file_size(path);
    const std::string end = last_bytes(path);

    export_boundaries(2000, path);
    constexpr std::uintmax_t boundary = 45 + 42 + 100'000 * 22; // its segment, its number of pairs, its pairs
    EXPECT_EQ(fs::file_size(path), small + 1999 * boundary);
    EXPECT_GT(fs::file_size(path), std::uintmax_t{1} << 32U);
    EXPECT_EQ(last_bytes(path), end);
    fs::remove(path);
}

} // namespace
} // namespace velm
