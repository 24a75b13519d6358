#pragma once

#include "model/model.hpp"

#include <span>
#include <vector>

namespace velm {

constexpr double seconds_a_day = 86'400;

/// One function's flow over the run, in m3/s after its field's factors.
///
/// The flow is straight between two pairs and keeps its first and last value outside them; without pairs it is 0.
/// Pairs count in the order of their times, of two with one time the later one holds from then on.
class FlowCourse {
public:
    /// `series` outlives the course. `end` is the run's last day; a run without length keeps its first moment.
    FlowCourse(const TimeSeries& series, double factor, double end);

    /// The flow on a day, also outside the run.
    [[nodiscard]] double at(double day) const;

    /// m3 over the run: what flows the positive way, and what flows the other way. Both are at least 0.
    [[nodiscard]] double forward() const { return forward_; }
    [[nodiscard]] double backward() const { return backward_; }

    /// The same as means over the run, m3/s; of a run without length the flow of day 0.
    [[nodiscard]] double mean_forward() const;
    [[nodiscard]] double mean_backward() const;

    /// The greatest and the least flow during the run, and the first day of each.
    [[nodiscard]] double greatest() const { return greatest_; }
    [[nodiscard]] double greatest_day() const { return greatest_day_; }
    [[nodiscard]] double least() const { return least_; }
    [[nodiscard]] double least_day() const { return least_day_; }

    /// The times of the pairs, rising, those outside the run included.
    [[nodiscard]] std::span<const float> times() const { return pairs().times; }

    /// Flows in m3/s and volumes in m3, exact for straight lines: what has passed since day 0, counted against the
    /// positive way where it is negative.
    struct Moments {
        std::vector<double> flow;
        std::vector<double> passed;
    };
    /// At each of `days`, which rise from 0.
    [[nodiscard]] Moments at_moments(std::span<const double> days) const;

private:
    void add_stretch(double day, double flow, double later, double flow_there);
    [[nodiscard]] const TimeSeries& pairs() const { return sorted_.times.empty() ? *pairs_ : sorted_; }

    const TimeSeries* pairs_;
    TimeSeries sorted_; ///< empty when the series is in order already
    double factor_;
    double length_;
    double forward_ = 0;
    double backward_ = 0;
    double greatest_ = 0;
    double greatest_day_ = 0;
    double least_ = 0;
    double least_day_ = 0;
};

} // namespace velm
