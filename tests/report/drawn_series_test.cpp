#include "report/drawn_series.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace velm {
namespace {

/// A year of hours with one peak, one trough, and a month that is missing.
TimeSeries year_of_hours()
{
    TimeSeries series;
    for (int hour = 0; hour < 8760; ++hour) {
        if (hour < 4000 || hour >= 4720) {
            series.times.push_back(static_cast<float>(hour) / 24);
            series.values.push_back(hour == 1234 ? 50 : hour == 6789 ? -50 : std::sin(static_cast<float>(hour)));
        }
    }
    return series;
}

TEST(DrawnSeries, KeepsEveryPairOfAShortOne)
{
    const TimeSeries series{{0, 1, 2}, {5, 6, 7}};
    const DrawnSeries drawn = drawn_series(series, facts_of(series), 3);
    EXPECT_EQ(drawn.times, series.times);
    EXPECT_EQ(drawn.values, series.values);
    EXPECT_FALSE(drawn.thinned);
}

TEST(DrawnSeries, LosesNoPeakNoEndAndNoGap)
{
    const TimeSeries series = year_of_hours();
    for (const std::size_t most : {64U, 100U, 999U, 5000U}) {
        const DrawnSeries drawn = drawn_series(series, facts_of(series), most);
        EXPECT_TRUE(drawn.thinned);
        EXPECT_LE(drawn.times.size(), most + 8);
        EXPECT_TRUE(std::is_sorted(drawn.times.begin(), drawn.times.end()));
        EXPECT_EQ(drawn.times.front(), series.times.front());
        EXPECT_EQ(drawn.times.back(), series.times.back());
        const auto value_at = [&](int hour) {
            const auto at = std::find(drawn.times.begin(), drawn.times.end(), static_cast<float>(hour) / 24);
            return at == drawn.times.end() ? 0 : drawn.values[static_cast<std::size_t>(at - drawn.times.begin())];
        };
        EXPECT_EQ(value_at(1234), 50);
        EXPECT_EQ(value_at(6789), -50);
        const auto gap = std::find_if(drawn.values.begin(), drawn.values.end(), [](float v) { return std::isnan(v); });
        ASSERT_NE(gap, drawn.values.end());
        const auto at = static_cast<std::size_t>(gap - drawn.values.begin());
        EXPECT_EQ(drawn.times[at - 1], 3999.0F / 24);
        EXPECT_EQ(drawn.times[at + 1], 4720.0F / 24);
    }
}

TEST(DrawnSeries, PutsPairsIntoTheOrderOfTheirTimes)
{
    const TimeSeries series{{3, 1, 2}, {30, 10, 20}};
    EXPECT_EQ(drawn_series(series, facts_of(series), 10).values, (std::vector<float>{10, 20, 30}));
}

TEST(DrawnSeries, SharesTheRoom)
{
    const std::vector<std::size_t> pairs{10, 5000, 100'000, 100'000};
    const std::size_t most = most_pairs_of_one(pairs, 25'010);
    EXPECT_EQ(most, 10'000U);
    EXPECT_GE(most_pairs_of_one(pairs, 1'000'000), 100'000U);
    EXPECT_EQ(most_pairs_of_one(pairs, 0), 64U);
}

} // namespace
} // namespace velm
