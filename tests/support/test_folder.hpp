#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

namespace velm {

/// A folder of this object alone, empty and gone with it.
struct TestFolder {
    TestFolder() { std::filesystem::create_directory(path); }
    ~TestFolder()
    {
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        std::filesystem::remove_all(path);
    }
    TestFolder& operator=(TestFolder&&) = delete; // neither copied nor moved

    [[nodiscard]] std::filesystem::path operator/(const std::string& name) const { return path / name; }

    static inline int number = 0;
    std::filesystem::path path =
        testing::TempDir() + "velm_test_" + std::to_string(getpid()) + '_' + std::to_string(++number);
};

/// The bytes of a file; "" when there is none.
inline std::string content_of(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void write_file(const std::filesystem::path& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

} // namespace velm
