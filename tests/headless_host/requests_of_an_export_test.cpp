#include "headless_host/headless_host.hpp"
#include "tests/headless_host/sample_model.hpp"

#include <gtest/gtest.h>

#include <filesystem>

extern "C" void importexport();

namespace velm {
namespace {

struct Case {
    std::string what;
    void (*fill)(Model& model); ///< fills an empty model
};

const TimeSeries three_pairs = {{1, 2, 3}, {4, 5, 6}};

// each row has a condition or a loop of its own in the order of requests
const Case cases[] = {
    {"nothing at all", [](Model&) {}},
    {"some of everything", [](Model& m) { m = sample_model(); }},
    {"a system", [](Model& m) { m.systems.resize(1); }},
    {"a segment", [](Model& m) { m.segments.resize(1); }},
    {"systems and segments", [](Model& m) { m.systems.resize(2), m.segments.resize(3); }},
    {"a flow field without functions", [](Model& m) { m.flow_fields.resize(1); }},
    {"flow option 3 without a flow field", [](Model& m) { m.segments.resize(1), m.segments[0].flow_option = 3; }},
    {"a hydrodynamic file and two flow fields",
     [](Model& m) { m.segments.resize(1), m.segments[0].flow_option = 3, m.flow_fields.resize(2); }},
    {"flow option 3 of segment 2 only",
     [](Model& m) { m.segments.resize(2), m.segments[1].flow_option = 3, m.flow_fields.resize(1); }},
    {"a flow function with paths and pairs",
     [](Model& m) {
         m.flow_fields = {{1, 1, {{"", {{}, {}}, three_pairs}}}};
     }},
    {"an exchange field without functions", [](Model& m) { m.exchange_fields.resize(1); }},
    {"an exchange function with both kinds of pairs",
     [](Model& m) {
         m.exchange_fields = {{1, 1, {{"", {{}, {}}, three_pairs}}}};
     }},
    {"two boundaries, one without pairs",
     [](Model& m) {
         m.systems.resize(1), m.systems[0].boundaries.items = {{1, three_pairs}, {2, {}}};
     }},
    {"a load without pairs", [](Model& m) { m.systems.resize(1), m.systems[0].loads.items.resize(1); }},
    {"an NPS file", [](Model& m) { m.nps_option = 1; }},
    {"an NPS option below 0", [](Model& m) { m.nps_option = -1; }},
    {"a type without time functions",
     [](Model& m) {
         m.time_function_types = {{7, {}}};
     }},
    {"unused time functions",
     [](Model& m) {
         m.time_function_types = {{7, {{}, {false, "", three_pairs}}}};
     }},
    {"used time functions, one without pairs",
     [](Model& m) {
         m.time_function_types = {{7, {{true, "", {}}, {true, "", three_pairs}}}, {8, {{}}}};
     }},
    {"a type without parameters",
     [](Model& m) {
         m.parameter_types = {{7, {}}};
     }},
    {"a used and an unused parameter on segments",
     [](Model& m) {
         m.segments.resize(3), m.parameter_types = {{7, {{}, {true, "", 1, {1, 2, 3}}}}};
     }},
    {"a type without constants",
     [](Model& m) {
         m.constant_types = {{7, {}}};
     }},
    {"a used and an unused constant",
     [](Model& m) {
         m.constant_types = {{7, {{true, "", 1}, {}}}};
     }},
};

TEST(RequestsOfAnExport, AreThoseThatThePlugInMakes)
{
    const std::filesystem::path file = std::filesystem::path(testing::TempDir()) / "requests_of_an_export_test.inp";
    for (const Case& row : cases) {
        Model model;
        row.fill(model);
        for (System& system : model.systems) {
            system.initial_conditions.resize(model.segments.size());
        }
        HeadlessHost host(model, file.string());
        velm_host_attach(&HeadlessHost::answer, &host);
        importexport();
        velm_host_attach(nullptr, nullptr);

        EXPECT_EQ(requests_of_an_export(model), host.requests()) << row.what;
        EXPECT_EQ(host.faults(), std::vector<std::string>{}) << row.what;
        EXPECT_TRUE(host.export_completed()) << row.what;
        EXPECT_EQ(host.progress(), 0) << row.what;
    }
    std::filesystem::remove(file);
}

} // namespace
} // namespace velm
