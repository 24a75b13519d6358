#include "water_balance/water_balance.hpp"

#include "water_balance/connections.hpp"
#include "water_balance/stays.hpp"
#include "water_balance/volumes.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace velm {

namespace {

constexpr double a_day = seconds_a_day;

/// Segments of a volume, and a run of so many days.
Model water(std::initializer_list<float> volumes, float end)
{
    Model model;
    model.julian_end_time = end;
    for (const float volume : volumes) {
        model.segments.emplace_back().volume = volume;
    }
    model.flow_fields.resize(6);
    return model;
}

/// What a series says at a moment, by its definition.
double value_at(const TimeSeries& series, double moment)
{
    const auto next = std::upper_bound(series.times.begin(), series.times.end(), static_cast<float>(moment));
    if (next == series.times.begin() || next == series.times.end()) {
        return next == series.times.begin() ? series.values.front() : series.values.back();
    }
    const auto i = static_cast<std::size_t>(next - series.times.begin());
    const double part = (moment - series.times[i - 1]) / (series.times[i] - series.times[i - 1]);
    return series.values[i - 1] + part * (series.values[i] - series.values[i - 1]);
}

/// A segment worked out by brute force, in steps so small that what they leave out does not matter.
struct SmallSteps {
    VolumeRange volume;
    double mean_in = 0;
    double mean_out = 0;
    double highest_outflow = 0;

    SmallSteps(const Model& model, std::int32_t segment)
    {
        constexpr int steps = 200'000;
        const double length = model.julian_end_time / double{steps};
        const double start = double{model.segments[static_cast<std::size_t>(segment - 1)].volume} *
                             double{model.volume_scale_factor} * double{model.volume_conversion_factor};
        volume = {start, start, start, 0, start, 0, {}, {}};
        for (int i = 0; i < steps; ++i) {
            const auto [in, out] = flow(model, segment, (i + 0.5) * length);
            mean_in += in / steps;
            mean_out += out / steps;
            highest_outflow = std::max(highest_outflow, out);
            see(start + (volume.end - start) + (in - out) * length * a_day, (i + 1) * length);
        }
    }

    static std::pair<double, double> flow(const Model& model, std::int32_t segment, double moment)
    {
        double in = 0;
        double out = 0;
        for (const std::size_t field : {0U, 1U, 5U}) {
            for (const FlowFunction& function : model.flow_fields[field].functions) {
                for (const FlowPath& path : function.paths) {
                    const double flow = value_at(function.series, moment) * double{path.fraction} *
                                        double{model.flow_fields[field].scale_factor} *
                                        double{model.flow_fields[field].conversion_factor};
                    const auto from = flow > 0 ? path.first_segment : path.second_segment;
                    const auto to = flow > 0 ? path.second_segment : path.first_segment;
                    in += to == segment ? std::abs(flow) : 0;
                    out += from == segment ? std::abs(flow) : 0;
                }
            }
        }
        return {in, out};
    }

    void see(double now, double moment)
    {
        volume.end = now;
        if (now < volume.least) {
            volume.least = now;
            volume.least_day = moment;
        }
        if (now > volume.greatest) {
            volume.greatest = now;
            volume.greatest_day = moment;
        }
        volume.dry_day = !volume.dry_day && now <= 0 ? moment : volume.dry_day;
        volume.full_day = !volume.full_day && now > full * volume.start ? moment : volume.full_day;
    }
};

/// A model of `segments`, all of whose flows are drawn, some of them turning.
Model drawn_model(unsigned seed, int segments, int pairs)
{
    std::mt19937 random(seed);
    const auto draw = [&](double least, double greatest) {
        return static_cast<float>(std::uniform_real_distribution<double>(least, greatest)(random));
    };
    const auto pick = [&](int least, int greatest) {
        return std::uniform_int_distribution<std::int32_t>(least, greatest)(random);
    };
    Model model = water({}, 30);
    model.volume_conversion_factor = 1000;
    for (int i = 0; i < segments; ++i) {
        model.segments.emplace_back().volume = draw(300, 3000);
    }
    for (std::size_t field = 0; field < 6; ++field) {
        model.flow_fields[field].conversion_factor = 0.5;
        model.flow_fields[field].scale_factor = field == 1 ? -2 : 2;
        for (int f = 0; f < 3; ++f) {
            FlowFunction& function = model.flow_fields[field].functions.emplace_back();
            for (int p = 0; p < 6; ++p) {
                const std::int32_t from = pick(0, segments);
                function.paths.push_back({from, (from + pick(1, segments)) % (segments + 1), draw(-0.2, 1)});
            }
            for (int i = 0; i < pairs; ++i) {
                function.series.times.push_back(draw(-5, 40));
                function.series.values.push_back(static_cast<float>(pick(-3, 5))); // 0 among them
            }
            std::sort(function.series.times.begin(), function.series.times.end());
        }
    }
    return model;
}

void expect_day(const std::optional<double>& one, const std::optional<double>& other)
{
    ASSERT_EQ(one.has_value(), other.has_value());
    EXPECT_NEAR(one.value_or(0), other.value_or(0), 2e-3);
}

} // namespace

TEST(WaterBalance, AgreesWithSmallSteps)
{
    constexpr int segments = 4;
    for (unsigned seed = 1; seed <= 6; ++seed) {
        SCOPED_TRACE(seed);
        const Model model = drawn_model(seed, segments, 12);
        const WaterBalance balance(model);
        const auto ranges = volume_ranges(balance);
        const auto stay = stays(balance);
        double stored = 0;
        for (std::int32_t segment = 1; segment <= segments; ++segment) {
            SCOPED_TRACE(segment);
            const SmallSteps expected(model, segment);
            const VolumeRange& range = ranges[static_cast<std::size_t>(segment - 1)];
            const double tolerance = 1e-4 * (std::abs(expected.volume.least) + std::abs(expected.volume.greatest));
            EXPECT_NEAR(range.end, expected.volume.end, tolerance);
            EXPECT_NEAR(range.least, expected.volume.least, tolerance);
            EXPECT_NEAR(range.greatest, expected.volume.greatest, tolerance);
            EXPECT_NEAR(range.least_day, expected.volume.least_day, 0.05);
            EXPECT_NEAR(range.greatest_day, expected.volume.greatest_day, 0.05);
            expect_day(range.dry_day, expected.volume.dry_day);
            expect_day(range.full_day, expected.volume.full_day);
            EXPECT_NEAR(balance.mean_flow(segment).in, expected.mean_in, 1e-3);
            EXPECT_NEAR(balance.mean_flow(segment).out, expected.mean_out, 1e-3);
            const Stay& one = stay[static_cast<std::size_t>(segment - 1)];
            EXPECT_NEAR(one.highest_outflow, expected.highest_outflow, 1e-2 * expected.highest_outflow);
            EXPECT_NEAR(one.mean * a_day * expected.mean_out, range.start, 1e-3 * range.start);
            const double outflow = SmallSteps::flow(model, segment, one.shortest_day).second;
            EXPECT_NEAR(outflow, one.highest_outflow, 1e-5 * one.highest_outflow);
            const std::vector<double> course = volume_course(balance, segment);
            EXPECT_NEAR(course.back(), range.end, 1e-6 * tolerance);
            const std::vector<double> added = added_until(balance, segment, range.least_day);
            double sum = range.start;
            for (const double one_added : added) {
                sum += one_added;
            }
            EXPECT_NEAR(sum, range.least, tolerance);
            stored += range.end - range.start;
        }
        EXPECT_NEAR(balance.totals().stored, stored, 1e-6 * (balance.totals().in + balance.totals().out));
    }
}

TEST(WaterBalance, LooksAtFewerMomentsOfLongSeries)
{
    const Model model = drawn_model(7, 3, 20'000);
    ASSERT_FALSE(WaterBalance(model).moments_are_all());
    ASSERT_LE(WaterBalance(model).moments().size(), most_moments);
    const WaterBalance balance(model);
    const auto ranges = volume_ranges(balance);
    for (std::int32_t segment = 1; segment <= 3; ++segment) {
        const SmallSteps expected(model, segment);
        const double size = std::abs(expected.volume.least) + std::abs(expected.volume.greatest);
        EXPECT_NEAR(ranges[static_cast<std::size_t>(segment - 1)].end, expected.volume.end, 1e-3 * size);
        EXPECT_NEAR(ranges[static_cast<std::size_t>(segment - 1)].least, expected.volume.least, 1e-3 * size);
    }
}

TEST(WaterBalance, EmptiesWithinAStep)
{
    // 1 m3/s more goes out than comes in at day 0, and 1 m3/s more comes in at day 2: least after one day, half a
    // day's worth of 1 m3/s below the start
    Model model = water({static_cast<float>(0.375 * a_day)}, 10);
    model.flow_fields[0].functions = {{"", {{1, 0, 1}}, {{0, 2}, {1, -1}}}};
    const VolumeRange range = volume_ranges(WaterBalance(model))[0];
    EXPECT_DOUBLE_EQ(range.least, -0.125 * a_day);
    EXPECT_DOUBLE_EQ(range.least_day, 1);
    EXPECT_NEAR(range.dry_day.value_or(-1), 0.5, 1e-9); // t - t^2 / 2 = 3 / 8
    EXPECT_EQ(volume_ranges(WaterBalance(water({0}, 10)))[0].dry_day, std::nullopt);
}

TEST(WaterBalance, TakesUpWhatSinglePrecisionLosesOfFractions)
{
    Model model = water({1, 1}, 1000);
    model.flow_fields[0].functions = {{"", {{0, 1, 1}, {1, 2, 0.62F}, {1, 0, 0.38F}, {2, 0, 0.62F}}, {{0}, {100}}}};
    const WaterBalance balance(model);
    EXPECT_EQ(volume_ranges(balance)[0].end, 1);
    EXPECT_EQ(balance.shares(1)[0].net_fraction(), 0);
    EXPECT_NEAR(balance.totals().in, 100 * 1000 * a_day, 1);
    model.flow_fields[0].functions[0].paths[1].fraction = 0.6F;
    EXPECT_NEAR(WaterBalance(model).shares(1)[0].net_fraction(), 0.02, 1e-6);
}

TEST(WaterBalance, KnowsWhatTouchesTheOutside)
{
    Model model = water({1, 1, 1, 1, 1}, 10);
    model.flow_fields[0].functions = {{"", {{0, 1, 1}, {1, 2, 1}, {2, 0, 1}}, {{0, 10}, {1, 2}}},
                                      {"", {{3, 0, 1}}, {{0, 5}, {1, -0.5F}}}, // turns
                                      {"", {{4, 0, 1}, {0, 4, -1}}, {{0, 20}, {1, -0.5F}}}};
    model.flow_fields[2].functions = {{"", {{0, 2, 1}}, {{0}, {1}}}};
    model.flow_fields[5].functions = {{"", {{0, 5, 1}}, {{0}, {1}}}};
    model.exchange_fields = {{1, 1, {{"", {{5, 0, 1, 1}, {3, 4, 1, 1}}, {{0, 1}, {0, 1}}}}},
                             {0, 1, {{"", {{0, 4, 1, 1}, {0, 9, 1, 1}}, {{0}, {1}}}}}};
    const WaterBalance balance(model);
    using Place = std::array<std::int32_t, 3>;
    const Place entries[] = {{1, 1, 1}, {}, {1, 2, 1}, {}, {}};
    const Place mixing[] = {{}, {}, {}, {}, {1, 1, 1}};
    for (std::int32_t segment = 1; segment <= 5; ++segment) {
        SCOPED_TRACE(segment);
        EXPECT_EQ(balance.outside(segment).entry, entries[segment - 1]);
        EXPECT_EQ(balance.outside(segment).mixing, mixing[segment - 1]);
        EXPECT_TRUE(balance.outside(segment).any);
    }
    const auto connections = connections_of(model);
    EXPECT_EQ(connections[3], (std::vector<Connection>{{0, false, 1}, {0, true, 2}, {3, true, 1}}));
}

TEST(WaterBalance, SaysSomethingOfModelsThatHaveLittle)
{
    for (const float end : {-1.0F, 0.0F, 10.0F}) {
        Model model = water({5, 0}, end);
        EXPECT_EQ(stays(WaterBalance(model))[0].shortest, std::numeric_limits<double>::infinity());
        model.flow_fields[0].functions = {{"", {{1, 1, 1}, {7, 2, 1}, {-1, 2, 1}, {2, 0, 1}}, {{3}, {2}}},
                                          {"", {{2, 0, 1}}, {}}};
        const WaterBalance balance(model);
        EXPECT_EQ(balance.shares(1).size(), 0U);
        EXPECT_EQ(balance.mean_flow(2).out, 2);
        EXPECT_EQ(stays(balance)[1].mean, 0);
        EXPECT_EQ(volume_ranges(balance)[1].dry_day, std::nullopt);
    }
    EXPECT_EQ(volume_ranges(WaterBalance(Model{})).size(), 0U);
}

} // namespace velm
