#include "tests/velm_export/export_case.hpp"

#include "Utilities/Export/velm_export/sections.hpp"

#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

namespace velm {

TestFolder::TestFolder() : path(testing::TempDir() + "velm_export_test_" + std::to_string(getpid()))
{
    std::filesystem::create_directory(path);
}

TestFolder::~TestFolder()
{
    std::filesystem::remove_all(path);
}

std::string content_of(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void run_export(ScriptedHost& host)
{
    velm_host_attach(&ScriptedHost::answer, &host);
    importexport();
    velm_host_attach(nullptr, nullptr);
}

void check(const SectionCase& row)
{
    SCOPED_TRACE(row.special);
    const TestFolder folder;
    ScriptedHost host(row.script, folder.path / "model.inp");
    run_export(host);
    const bool announced = !announcement_of_section(row.section).empty(); // the boundaries' follow the exchanges'
    if (!row.requests.empty()) {
        EXPECT_EQ(host.requests_after(announcement_of_section(announced ? row.section : row.section - 1)),
                  one_a_line(row.requests));
    }
    EXPECT_EQ('\n' + records_of_section(content_of(folder.path / "model.inp"), row.section), row.records);
}

} // namespace velm
