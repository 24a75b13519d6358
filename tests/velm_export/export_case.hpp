#pragma once

#include "tests/support/scripted_host.hpp"

#include <cstddef>
#include <filesystem>
#include <string>

namespace velm {

/// One row: what the host answers, and what a section then asks and writes.
struct SectionCase {
    const char* special;
    std::size_t section; ///< from 1, in file order
    std::string script;
    std::string requests; ///< of the section, in order; "" when the row is not about them
    std::string records;  ///< of the section, its banner left out, as shown() shows them
};

/// A folder of this process alone, gone with the object.
class TestFolder {
public:
    TestFolder();
    ~TestFolder();
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;
    TestFolder(TestFolder&&) = delete;
    TestFolder& operator=(TestFolder&&) = delete;

    std::filesystem::path path;
};

/// The bytes of a file; "" when there is none.
std::string content_of(const std::filesystem::path& path);

/// One export through the library's entry, with `host` attached while it runs.
void run_export(ScriptedHost& host);

/// Exports for the row and compares.
void check(const SectionCase& row);

} // namespace velm
