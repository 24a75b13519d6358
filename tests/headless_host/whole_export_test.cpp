#include "headless_host/headless_host.hpp"
#include "tests/headless_host/export_sizes.hpp"
#include "tests/headless_host/sample_model.hpp"

#include <gtest/gtest.h>

#include <filesystem>

extern "C" void importexport();

namespace velm {
namespace {

void export_and_compare(Model model, const std::string& what)
{
    for (System& system : model.systems) {
        system.initial_conditions.resize(model.segments.size());
    }
    const std::filesystem::path file = std::filesystem::path(testing::TempDir()) / "velm_whole_export_test.inp";
    HeadlessHost host(model, file.string());
    velm_host_attach(&HeadlessHost::answer, &host);
    importexport();
    velm_host_attach(nullptr, nullptr);
    std::filesystem::remove(file);

    EXPECT_EQ(host.requests(), requests_of_an_export(model)) << what;
    EXPECT_EQ(host.faults(), std::vector<std::string>{}) << what;
    EXPECT_TRUE(host.export_completed()) << what;
    EXPECT_EQ(host.progress(), 0) << what;
}

TEST(WholeExport, TakesTheRequestsThatWereCountedBeforehand)
{
    export_and_compare(sample_model(), "the sample model");
    for (const ExportSize& row : export_sizes) {
        Model model;
        row.fill(model);
        export_and_compare(model, row.what);
    }
}

} // namespace
} // namespace velm
