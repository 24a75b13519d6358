#include "headless_host/headless_host.hpp"

#include "tests/headless_host/asking.hpp"
#include "tests/support/river.hpp"

#include <gtest/gtest.h>

#include <stdexcept>

namespace velm {
namespace {

using namespace std::string_literals;

const std::string completion = "File Export is Complete</span></li>\0"s;

void post(std::string fragment)
{
    call("PINFOHTML\0"s, {fragment.data()}, {static_cast<std::int32_t>(fragment.size())});
}

TEST(HeadlessHost, JoinsPanelFragmentsAndSeesCompletion)
{
    struct {
        std::vector<std::string> fragments;
        std::string panel;
        bool completed;
    } const rows[] = {
        {{}, "", false},
        {{"<li>\0"s, "VELM 1.0\0    \0"s, "</li>\0"s}, "<li>VELM 1.0</li>", false},
        {{"no NUL", "\0hidden"s, ""}, "no NUL", false},
        {{"<li>\0"s, completion}, "<li>File Export is Complete</span></li>", true},
        {{completion, "<li>\0"s, "red\0"s}, "File Export is Complete</span></li><li>red", false},
        {{"File Export is Complete\0"s}, "File Export is Complete", false},
    };
    for (const auto& row : rows) {
        const Model model;
        HeadlessHost host(model, "a");
        velm_host_attach(&HeadlessHost::answer, &host);
        for (const std::string& fragment : row.fragments) {
            post(fragment);
        }
        EXPECT_EQ(host.panel(), row.panel);
        EXPECT_EQ(host.export_completed(), row.completed) << row.panel;
        EXPECT_EQ(host.requests(), row.fragments.size());
        EXPECT_EQ(host.fault_count(), 0U);
    }
}

TEST(HeadlessHost, KeepsTheLastProgressAndReportsItsOwn)
{
    const Model model;
    HeadlessHost host(model, "a");
    std::vector<std::uint64_t> reported;
    host.on_progress = [&](std::uint64_t values) { reported.push_back(values); };
    velm_host_attach(&HeadlessHost::answer, &host);
    EXPECT_EQ(host.progress(), -1);
    std::int32_t percent = 40;
    call("PPROGRESS\0"s, {&percent});
    EXPECT_EQ(host.progress(), 40);
    std::int32_t value = 0;
    for (int i = 1; i < 131'071; ++i) {
        call("GNUMSEG\0"s, {&value});
    }
    call("GVOLUME\0"s, {&value, &value}); // a fault counts as well
    EXPECT_EQ(reported, (std::vector<std::uint64_t>{65'536, 131'072}));
    EXPECT_EQ(host.requests(), 131'072U);
    EXPECT_EQ(host.fault_count(), 1U);
}

TEST(HeadlessHost, CountsThePairsOfASeriesThatIsServedWhole)
{
    Model model = river();
    model.systems[0].loads.items = {{1, {std::vector<float>(70'000), std::vector<float>(70'000)}}};
    HeadlessHost host(model, "a");
    std::vector<std::uint64_t> reported;
    host.on_progress = [&](std::uint64_t values) { reported.push_back(values); };
    velm_host_attach(&HeadlessHost::answer, &host);
    EXPECT_EQ(ask("GNBWK", {1, 1}), "70000");
    EXPECT_EQ(ask("GNBWK", {1, 1}), "70000");
    EXPECT_EQ(reported, (std::vector<std::uint64_t>{70'001, 140'002}));
}

TEST(HeadlessHost, RefusesFileNamesThatCannotTravel)
{
    const Model model;
    struct {
        std::string name;
        std::string refusal;
    } const rows[] = {
        {"", "output file name of 0 bytes; it must have 1 to 512"},
        {std::string(513, 'n'), "output file name of 513 bytes; it must have 1 to 512"},
        {"a.inp ",
         "output file name 'a.inp ': it must not contain a NUL or end in a blank, which the plug-in cuts off"},
        {"a\0b"s, "output file name 'a\0b': it must not contain a NUL or end in a blank, which the plug-in cuts off"s},
    };
    for (const auto& row : rows) {
        try {
            const HeadlessHost host(model, row.name);
            ADD_FAILURE() << "accepted: " << row.name;
        } catch (const std::invalid_argument& refusal) {
            EXPECT_STREQ(refusal.what(), row.refusal.c_str());
        }
    }
    HeadlessHost host(model, std::string(512, 'n'));
    velm_host_attach(&HeadlessHost::answer, &host);
    EXPECT_EQ(ask("GFILENAME", {}), '\'' + std::string(512, 'n') + '\'');
}

} // namespace
} // namespace velm
