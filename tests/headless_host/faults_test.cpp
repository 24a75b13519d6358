#include "headless_host/headless_host.hpp"
#include "tests/headless_host/asking.hpp"
#include "tests/support/river.hpp"

#include <gtest/gtest.h>

namespace velm {
namespace {

using Faults = std::vector<std::string>;

class AttachedHost {
public:
    explicit AttachedHost(Model model) : model_(std::move(model)) { velm_host_attach(&HeadlessHost::answer, &host); }

private:
    Model model_;

public:
    HeadlessHost host{model_, "a"};
};

TEST(Faults, IndicesThatTheModelDoesNotHave)
{
    Model model = river();
    model.systems[1].loads.items.clear();
    model.systems[1].initial_conditions.clear();
    model.time_function_types.push_back({70, {}});
    struct {
        std::string key;
        std::vector<std::int32_t> in_arguments;
        std::string fault;
    } const rows[] = {
        {"GVOLUME", {0}, "GVOLUME(segment 0): the model has 3 segments"},
        {"GVOLUME", {4}, "GVOLUME(segment 4): the model has 3 segments"},
        {"GVOLUME", {-2147483647}, "GVOLUME(segment -2147483647): the model has 3 segments"},
        {"GIQOPT", {4}, "GIQOPT(segment 4): the model has 3 segments"},
        {"GSYSNAME", {3}, "GSYSNAME(system 3): the model has 2 systems"},
        {"GNINQ", {2}, "GNINQ(flow field 2): the model has 1 flow field"},
        {"GNOQS", {1, 3}, "GNOQS(flow field 1, flow function 3): the flow field has 2 flow functions"},
        {"GJQ", {1, 1, 3}, "GJQ(flow field 1, flow function 1, flow path 3): the flow function has 2 flow paths"},
        {"GNOQFUNC",
         {1, 1, 5},
         "GNOQFUNC(flow field 1, flow function 1, time pair 5): the flow function has 4 time pairs"},
        {"GNTEX", {2}, "GNTEX(exchange field 2): the model has 1 exchange field"},
        {"GNORS", {1, 2}, "GNORS(exchange field 1, exchange function 2): the exchange field has 1 exchange function"},
        {"GXAREA",
         {1, 1, 0},
         "GXAREA(exchange field 1, exchange function 1, segment pair 0): the exchange function has 1 segment pair"},
        {"GIBC", {1, 3}, "GIBC(system 1, boundary 3): the system has 2 boundaries"},
        {"GALLLOADFUNC", {2, 1}, "GALLLOADFUNC(system 2, load 1): the system has no loads"},
        {"GTFISC", {5}, "GTFISC(type 5): the model has 4 types"},
        {"GNUMTIMEFUNC", {3}, "GNUMTIMEFUNC(ISC number 3): the model has no type of that ISC number"},
        {"GTFISUSED", {70, 2}, "GTFISUSED(ISC number 70, time function 2): the type has no time functions"},
        {"GNBRKTF", {70, 1}, "GNBRKTF(ISC number 70, time function 1): the type has no time functions"},
        {"GCONSTPARAM", {1, 2, 2}, "GCONSTPARAM(segment 1, ISC number 2, instance 2): the type has 1 instance"},
        {"GCONSTPARAM", {4, 2, 1}, "GCONSTPARAM(segment 4, ISC number 2, instance 1): the model has 3 segments"},
        {"GFDISS", {2, 1}, "GFDISS(system 2, segment 1): the system has values for no segments"},
    };
    for (const auto& row : rows) {
        const AttachedHost attached(model);
        const std::string answer = ask(row.key, row.in_arguments);
        EXPECT_EQ(answer.find_first_not_of("? "), std::string::npos) << row.fault << " was answered with " << answer;
        EXPECT_EQ(attached.host.faults(), Faults{row.fault});
        EXPECT_EQ(attached.host.fault_count(), 1U);
    }
}

TEST(Faults, RequestsThatBreakTheContract)
{
    std::int32_t number = 1;
    std::string text(600, 'x');
    void* const n = &number;
    void* const t = text.data();
    using namespace std::string_literals;
    struct {
        std::string key;
        std::vector<void*> values;
        std::vector<std::int32_t> text_lengths;
        std::string fault;
    } const rows[] = {
        {"GFOO\0"s, {n}, {}, "unknown key \"GFOO\" of length 5"},
        {"GNUMSEG"s, {n}, {}, "unknown key \"GNUMSEG\" of length 7, not ended by a NUL"},
        {"GNUMSEG "s, {n}, {}, "unknown key \"GNUMSEG \" of length 8, not ended by a NUL"},
        {"gnumseg\n\xFF\0"s, {n}, {}, "unknown key \"gnumseg??\" of length 10"},
        {""s, {n}, {}, "unknown key \"\" of length 0, not ended by a NUL"},
        {std::string(99, 'G') + '\0', {n}, {}, "unknown key \"" + std::string(32, 'G') + "\" of length 100"},
        {"GNUMSEG\0"s, {n, t}, {}, "GNUMSEG: asked through host_exchange_2, its call form is host_exchange_1"},
        {"GSYSNAME\0"s, {n}, {}, "GSYSNAME: asked through host_exchange_1, its call form is host_exchange_3"},
        {"GFILENAME\0"s, {t}, {511}, "GFILENAME: length 511 passed for text 1, its length is 512"},
        {"GSYSNAME\0"s, {n, t, t}, {30, 30}, "GSYSNAME: length 30 passed for text 2, its length is 5"},
        {"GSEGNAME\0"s, {n, t}, {-40}, "GSEGNAME: length -40 passed for text 1, its length is 40"},
        {"PINFOHTML\0"s, {t}, {-1}, "PINFOHTML: length -1 passed for text 1, its length is 0 or more"},
    };
    for (const auto& row : rows) {
        const AttachedHost attached(river());
        call(row.key, row.values, row.text_lengths);
        EXPECT_EQ(attached.host.faults(), Faults{row.fault});
        EXPECT_EQ(number, 1) << row.fault;
        EXPECT_EQ(text, std::string(600, 'x')) << row.fault;
    }
}

TEST(Faults, DataThatDoNotFitThePlugInsFields)
{
    Model model = river();
    model.segments[0].name = std::string(41, 'n');
    model.systems[0].boundaries.items[0].series.times.resize(100'001);
    model.systems[0].loads.items[0].series.values.resize(2); // fewer than times
    model.flow_fields[0].functions[1].series.values.resize(1);
    const AttachedHost attached(model);
    EXPECT_EQ(ask("GSEGNAME", {1}), "?");
    EXPECT_EQ(ask("GALLBOUNDFUNC", {1, 1}), "? ?");
    EXPECT_EQ(ask("GALLLOADFUNC", {1, 1}), "[0 1 2 5] [1.5 2]");
    ask("GNOQFUNC", {1, 2, 2});
    EXPECT_EQ(attached.host.faults(),
              (Faults{"GSEGNAME(segment 1): the model's segment name has 41 characters, the field 40",
                      "GALLBOUNDFUNC(system 1, boundary 1): the series has 100001 time pairs, the plug-in's tables "
                      "hold 100000",
                      "GNOQFUNC(flow field 1, flow function 2, time pair 2): the flow function has 1 time pair"}));
}

TEST(Faults, AreCountedBeyondTheHundredThatAreKept)
{
    const AttachedHost attached(Model{});
    for (std::int32_t segment = 1; segment <= 150; ++segment) {
        ask("GVOLUME", {segment});
    }
    EXPECT_EQ(attached.host.fault_count(), 150U);
    ASSERT_EQ(attached.host.faults().size(), 100U);
    EXPECT_EQ(attached.host.faults().back(), "GVOLUME(segment 100): the model has no segments");
}

} // namespace
} // namespace velm
