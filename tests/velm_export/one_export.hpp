#pragma once

#include "Utilities/Export/velm_export/sections.hpp"
#include "tests/support/scripted_host.hpp"

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

namespace velm {

/// A folder of this process alone, empty and gone with the object.
struct TestFolder {
    TestFolder() { std::filesystem::create_directory(path); }
    ~TestFolder() { std::filesystem::remove_all(path); }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;
    TestFolder(TestFolder&&) = delete;
    TestFolder& operator=(TestFolder&&) = delete;

    std::filesystem::path path = testing::TempDir() + "velm_export_test_" + std::to_string(getpid());
};

/// The bytes of a file; "" when there is none.
inline std::string content_of(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// One export through the library's entry, with `host` attached while it runs.
inline void run_export(ScriptedHost& host)
{
    velm_host_attach(&ScriptedHost::answer, &host);
    importexport();
    velm_host_attach(nullptr, nullptr);
}

inline constexpr std::size_t version_fragments = 25;
/// Ten announcements of two fragments each, in file order; the sixth section has none.
inline constexpr std::size_t announcing_fragments = 20;

} // namespace velm
