#include "water_balance/run_dates.hpp"

#include <gtest/gtest.h>

#include <array>

namespace velm {

TEST(RunDates, TakesThreeIntegersInAnyOrder)
{
    struct Case {
        std::array<std::int32_t, 3> date;
        std::array<std::int32_t, 3> time;
        double day;
        std::string words;
    };
    const Case cases[] = {
        {{2001, 3, 1}, {0, 0, 0}, 39, "2001-04-09, day 39"},
        {{2001, 13, 3}, {0, 0, 0}, 0, "2001-03-13, day 0"},  // year, day, month
        {{3, 4, 2001}, {0, 0, 0}, 0, "2001-03-04, day 0"},   // month first
        {{25, 12, 2001}, {0, 0, 0}, 0, "2001-12-25, day 0"}, // day first, as there is no month 25
        {{5, 2001, 6}, {0, 0, 0}, 0, "2001-05-06, day 0"},
        {{2000, 2, 29}, {0, 0, 0}, 1, "2000-03-01, day 1"},
        {{2001, 2, 29}, {0, 0, 0}, 1, "day 1"},
        {{1900, 2, 29}, {0, 0, 0}, 1, "day 1"},
        {{999, 1, 1}, {0, 0, 0}, 0.5, "day 0.5"},
        {{3001, 1, 1}, {0, 0, 0}, 0, "day 0"},
        {{0, 0, 0}, {0, 0, 0}, 0, "day 0"},
        {{2001, 1, 1}, {18, 0, 0}, 0.25, "2001-01-02, day 0.25"},
        {{2001, 1, 1}, {25, 0, 0}, 0.99, "2001-01-01, day 0.99"},
        {{2001, 1, 1}, {0, 0, 0}, -0.001, "2000-12-31, day -0.001"},
        {{2001, 1, 1}, {0, 0, 0}, 1e30, "day 1000000000000000019884624838656"},
        {{2001, 1, 1}, {0, 0, 0}, 3e6, "day 3000000"}, // in the year 10214
    };
    for (const Case& one : cases) {
        Model model;
        model.start_date = one.date;
        model.start_time = one.time;
        EXPECT_EQ(RunDates(model).in_words(one.day), one.words);
    }
}

TEST(RunDates, KnowsATimeOfDay)
{
    EXPECT_EQ(time_of_day({23, 59, 59}), std::chrono::seconds{86'399});
    for (const std::array<std::int32_t, 3> none : {std::array{24, 0, 0}, {0, 60, 0}, {0, 0, 60}, {-1, 0, 0}}) {
        EXPECT_FALSE(time_of_day(none));
    }
}

TEST(InFigures, KeepsFourFiguresOfSmallNumbers)
{
    EXPECT_EQ(in_figures(0.013144), "0.01314");
    EXPECT_EQ(in_figures(1.4), "1.4");
    EXPECT_EQ(in_figures(39), "39");
    EXPECT_EQ(in_figures(1095.256), "1095.26");
    EXPECT_EQ(in_figures(0), "0");
    EXPECT_EQ(in_figures(-1.5e-9), "-1.500e-09");
    EXPECT_EQ(in_figures(1e30), "1.000e+30");
}

} // namespace velm
