#include "water_balance/flow_course.hpp"

#include "water_balance/series_facts.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velm {

namespace {

/// The place of the first pair after a day.
std::size_t next_pair(const TimeSeries& pairs, double day)
{
    const auto next = std::upper_bound(pairs.times.begin(), pairs.times.end(), day,
                                       [](double one, float time) { return one < double{time}; });
    return static_cast<std::size_t>(next - pairs.times.begin());
}

/// The value on a day before which no pair but those before `next` lies. There is at least one pair.
double value_before(const TimeSeries& pairs, std::size_t next, double day)
{
    if (next == 0) {
        return pairs.values.front();
    }
    if (next == pairs.times.size()) {
        return pairs.values.back();
    }
    const double before = pairs.times[next - 1];
    const double after = pairs.times[next];
    const double value = pairs.values[next - 1];
    return before == after ? value : value + (pairs.values[next] - value) * ((day - before) / (after - before));
}

/// Calls use(day, value, later day, value there) for each straight stretch from day 0 to `end`.
template <class Use>
void for_each_stretch(const TimeSeries& pairs, double end, Use use)
{
    std::size_t next = next_pair(pairs, 0);
    double day = 0;
    double value = value_before(pairs, next, 0);
    for (; next < pairs.times.size() && pairs.times[next] < end; ++next) {
        use(day, value, double{pairs.times[next]}, double{pairs.values[next]});
        day = pairs.times[next];
        value = pairs.values[next];
    }
    use(day, value, end, value_before(pairs, next, end));
}

} // namespace

FlowCourse::FlowCourse(const TimeSeries& series, double factor, double end)
    : pairs_(&series), factor_(factor), length_(end)
{
    if (!std::is_sorted(series.times.begin(), series.times.end())) {
        sorted_ = in_order(series);
    }
    if (series.times.empty()) {
        return;
    }
    greatest_ = least_ = at(0);
    for_each_stretch(pairs(), end, [this](double day, double value, double later, double value_there) {
        add_stretch(day, value * factor_, later, value_there * factor_);
    });
}

void FlowCourse::add_stretch(double day, double flow, double later, double flow_there)
{
    for (const auto& [moment, one] : {std::pair{day, flow}, {later, flow_there}}) {
        if (one > greatest_) {
            greatest_ = one;
            greatest_day_ = moment;
        }
        if (one < least_) {
            least_ = one;
            least_day_ = moment;
        }
    }
    const double seconds = (later - day) * seconds_a_day;
    if ((flow < 0 && flow_there > 0) || (flow > 0 && flow_there < 0)) { // it turns on the way: a triangle of each sign
        const double part = flow / (flow - flow_there);
        forward_ += flow > 0 ? flow * part * seconds / 2 : flow_there * (1 - part) * seconds / 2;
        backward_ -= flow < 0 ? flow * part * seconds / 2 : flow_there * (1 - part) * seconds / 2;
    } else {
        (flow + flow_there < 0 ? backward_ : forward_) += std::abs(flow + flow_there) / 2 * seconds;
    }
}

double FlowCourse::at(double day) const
{
    return pairs().times.empty() ? 0 : factor_ * value_before(pairs(), next_pair(pairs(), day), day);
}

double FlowCourse::mean_forward() const
{
    return length_ > 0 ? forward_ / (length_ * seconds_a_day) : std::max(at(0), 0.0);
}

double FlowCourse::mean_backward() const
{
    return length_ > 0 ? backward_ / (length_ * seconds_a_day) : std::max(-at(0), 0.0);
}

FlowCourse::Moments FlowCourse::at_moments(std::span<const double> days) const
{
    Moments moments{std::vector<double>(days.size()), std::vector<double>(days.size())};
    const TimeSeries& all = pairs();
    if (all.times.empty()) {
        return moments;
    }
    std::size_t next = next_pair(all, 0);
    double day = 0;
    double value = value_before(all, next, 0);
    double passed = 0; // value * days
    for (std::size_t m = 0; m < days.size(); ++m) {
        for (; next < all.times.size() && all.times[next] <= days[m]; ++next) {
            passed += (value + all.values[next]) / 2 * (all.times[next] - day);
            day = all.times[next];
            value = all.values[next];
        }
        const double there = value_before(all, next, days[m]);
        moments.flow[m] = factor_ * there;
        moments.passed[m] = factor_ * seconds_a_day * (passed + (value + there) / 2 * (days[m] - day));
    }
    return moments;
}

} // namespace velm
