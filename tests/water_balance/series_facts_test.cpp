#include "water_balance/series_facts.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace velm {

namespace {

/// Times from 0 on at a step, but for those between `from` and `to`.
std::vector<float> times(int pairs, double step, int from = 0, int to = 0)
{
    std::vector<float> result;
    for (int i = 0; i < pairs; ++i) {
        if (i <= from || i >= to) {
            result.push_back(static_cast<float>(i * step));
        }
    }
    return result;
}

/// As a file shows them that has two decimals.
std::vector<float> rounded(std::vector<float> times)
{
    for (float& time : times) {
        time = static_cast<float>(std::round(double{time} * 100) / 100);
    }
    return times;
}

std::vector<float> reversed(std::vector<float> times)
{
    std::reverse(times.begin(), times.end());
    return times;
}

} // namespace

TEST(SeriesFacts, FindsGaps)
{
    struct Case {
        std::string what;
        std::vector<float> times;
        double usual;
        std::size_t gaps;
        double from;
        double to;
    };
    const std::vector<float> months{0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365};
    std::vector<float> two_gaps = times(200, 1, 40, 49);
    two_gaps.erase(two_gaps.begin() + 100, two_gaps.begin() + 120);
    const Case cases[] = {
        {"daily", times(100, 1), 1, 0, 0, 0},
        {"a step of seven days is none", times(100, 1, 40, 47), 1, 0, 0, 0},
        {"one of eight is", times(100, 1, 40, 48), 1, 1, 40, 48},
        {"a month missing", times(366, 1, 120, 151), 1, 1, 120, 151},
        {"the longest of two", two_gaps, 1, 2, 107, 128},
        {"hours", times(9000, 1.0 / 24, 3000, 3007), 1.0 / 24, 0, 0, 0},
        {"hours, eight missing", times(9000, 1.0 / 24, 3000, 3008), 1.0 / 24, 1, 125, 125 + 8.0 / 24},
        {"hours beyond day 1,000, as a file shows them", rounded(times(90'000, 1.0 / 24, 60'000, 60'007)), 1.0 / 24, 0,
         0, 0},
        {"the same, twelve missing", rounded(times(90'000, 1.0 / 24, 60'000, 60'012)), 1.0 / 24, 1, 2500, 2500.5},
        {"nine pairs", {0, 1, 2, 3, 4, 5, 6, 7, 100}, 1, 0, 0, 0},
        {"ten pairs, of which nine in ten steps must be usual", {0, 1, 2, 3, 4, 5, 6, 7, 8, 100}, 1, 0, 0, 0},
        {"eleven pairs", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 100}, 1, 1, 9, 100},
        {"months", months, 31, 0, 0, 0},
        {"of no usual step", {0, 1, 3, 7, 15, 31, 63, 127, 255, 511, 1023, 2047, 4095}, 48, 0, 0, 0},
        {"backwards", reversed(times(100, 1, 40, 60)), 1, 1, 40, 60},
        {"all at once", std::vector<float>(20, 5), 0, 0, 0, 0},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.what);
        const SeriesFacts facts = facts_of({one.times, std::vector<float>(one.times.size(), 1)});
        EXPECT_NEAR(facts.usual_step, one.usual, 2e-4);
        EXPECT_EQ(facts.gaps, one.gaps);
        EXPECT_NEAR(facts.longest_gap.from, one.from, 5e-3);
        EXPECT_NEAR(facts.longest_gap.to, one.to, 5e-3);
    }
    EXPECT_EQ(facts_of({two_gaps, std::vector<float>(two_gaps.size(), 1)}).first_gap.from, 40);
}

TEST(SeriesFacts, SumsUpValuesAfterTheirFactor)
{
    const SeriesFacts facts = facts_of({{5, 1, 3}, {2, -4, 8}}, -0.5);
    EXPECT_EQ(facts.pairs, 3U);
    EXPECT_EQ(facts.first_day, 1);
    EXPECT_EQ(facts.last_day, 5);
    EXPECT_EQ(facts.least, -4);
    EXPECT_EQ(facts.mean, -1);
    EXPECT_EQ(facts.greatest, 2);
    EXPECT_EQ(facts_of({}).pairs, 0U);
    EXPECT_EQ(facts_of({{7}, {3}}).usual_step, 0);
}

} // namespace velm
