#include "water_balance/series_facts.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

namespace velm {

namespace {

constexpr std::size_t fewest_regular_pairs = 10;
constexpr double regular_share = 0.9;
constexpr double step_tolerance = 0.05;
constexpr double usual_steps_of_a_gap = 7;

double median_of(std::vector<float> steps)
{
    const auto middle = steps.begin() + static_cast<std::ptrdiff_t>(steps.size() / 2);
    std::nth_element(steps.begin(), middle, steps.end());
    if (steps.size() % 2 == 1) {
        return *middle;
    }
    return (double{*std::max_element(steps.begin(), middle)} + double{*middle}) / 2;
}

/// What looks at the steps of one series, whose times rise.
class Steps {
public:
    explicit Steps(const std::vector<float>& times) : times_(times), steps_(times.size() - 1)
    {
        for (std::size_t i = 0; i < steps_.size(); ++i) {
            steps_[i] = times[i + 1] - times[i];
        }
        rounding_ = time_rounding(std::max(std::abs(times.front()), std::abs(times.back())));
        usual_ = mean_of_the_same(median_of(steps_));
    }

    [[nodiscard]] double usual() const { return usual_; }

    [[nodiscard]] bool are_regular() const
    {
        const double tolerance = std::max(step_tolerance * usual_, rounding_) + usual_ * 1e-6;
        const auto usual = std::count_if(steps_.begin(), steps_.end(),
                                         [&](float step) { return std::abs(step - usual_) <= tolerance; });
        return usual_ > 0 && times_.size() >= fewest_regular_pairs &&
               static_cast<double>(usual) >= regular_share * static_cast<double>(steps_.size());
    }

    void put_gaps(SeriesFacts& facts) const
    {
        facts.longest_step = usual_steps_of_a_gap * usual_ + rounding_;
        for (std::size_t i = 0; i < steps_.size(); ++i) {
            if (steps_[i] > facts.longest_step) {
                const SeriesGap gap{times_[i], times_[i + 1]};
                facts.first_gap = facts.gaps == 0 ? gap : facts.first_gap;
                facts.longest_gap = gap.length() > facts.longest_gap.length() ? gap : facts.longest_gap;
                ++facts.gaps;
            }
        }
    }

private:
    [[nodiscard]] double mean_of_the_same(double median) const
    {
        double sum = 0;
        std::size_t count = 0;
        for (const float step : steps_) {
            if (std::abs(step - median) <= rounding_) {
                sum += double{step};
                ++count;
            }
        }
        return count == 0 ? median : sum / static_cast<double>(count);
    }

    const std::vector<float>& times_;
    std::vector<float> steps_;
    double rounding_ = 0;
    double usual_ = 0;
};

void put_steps(SeriesFacts& facts, const std::vector<float>& times)
{
    facts.first_day = times.front();
    facts.last_day = times.back();
    if (times.size() < 2) {
        return;
    }
    const Steps steps(times);
    facts.usual_step = steps.usual();
    facts.regular = steps.are_regular();
    if (facts.regular) {
        steps.put_gaps(facts);
    }
}

void put_values(SeriesFacts& facts, const std::vector<float>& values, double factor)
{
    const auto [least, greatest] = std::minmax_element(values.begin(), values.end());
    const double sum = std::accumulate(values.begin(), values.end(), 0.0);
    facts.least = std::min(double{*least} * factor, double{*greatest} * factor);
    facts.greatest = std::max(double{*least} * factor, double{*greatest} * factor);
    facts.mean = sum * factor / static_cast<double>(values.size());
}

} // namespace

SeriesFacts facts_of(const TimeSeries& series, double factor)
{
    SeriesFacts facts;
    facts.pairs = series.times.size();
    if (facts.pairs == 0) {
        return facts;
    }
    if (std::is_sorted(series.times.begin(), series.times.end())) {
        put_steps(facts, series.times);
    } else {
        std::vector<float> times = series.times;
        std::sort(times.begin(), times.end());
        put_steps(facts, times);
    }
    put_values(facts, series.values, factor);
    return facts;
}

TimeSeries in_order(const TimeSeries& series)
{
    std::vector<std::size_t> order(series.times.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t one, std::size_t other) { return series.times[one] < series.times[other]; });
    TimeSeries sorted;
    for (const std::size_t i : order) {
        sorted.times.push_back(series.times[i]);
        sorted.values.push_back(series.values[i]);
    }
    return sorted;
}

double time_rounding(double day)
{
    constexpr int digits = 6;
    if (!(std::abs(day) > 0)) {
        return 0;
    }
    const double unit = std::pow(10, std::floor(std::log10(std::abs(day))) + 1 - digits);
    return unit + std::abs(day) * 2 * double{std::numeric_limits<float>::epsilon()};
}

} // namespace velm
