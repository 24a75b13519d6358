#pragma once

#include "model/model.hpp"

#include <cstddef>

namespace velm {

/// Two times of a series that follow each other.
struct SeriesGap {
    double from = 0; ///< days
    double to = 0;

    [[nodiscard]] double length() const { return to - from; }
};

/// What can be said of a series without knowing what it is. Its pairs count in the order of their times, whatever
/// their order in the series.
struct SeriesFacts {
    std::size_t pairs = 0;
    double first_day = 0; ///< its least and its greatest time; 0 without pairs
    double last_day = 0;
    /// Days: the median of its steps; of steps that differ only as six digits of a time do, their mean, so that hours
    /// stay 0.041667. 0 with fewer than two pairs.
    double usual_step = 0;
    /// At least ten pairs, of which 90 % follow each other by the usual step, give or take 5 %.
    bool regular = false;
    /// Steps of more than seven usual ones; only of a regular series.
    std::size_t gaps = 0;
    double longest_step = 0; ///< days; steps of more are the gaps
    SeriesGap first_gap;
    SeriesGap longest_gap; ///< the first of the longest
    double least = 0;      ///< of the pairs' values, after the factor
    double mean = 0;       ///< of the pairs' values, each counting once
    double greatest = 0;
};

/// `factor` is what the engine multiplies the values by: scale factor times conversion factor.
[[nodiscard]] SeriesFacts facts_of(const TimeSeries& series, double factor = 1);

/// How far two times near `day` may differ by the rounding of a file: a unit of the sixth digit, and what single
/// precision cannot tell apart.
[[nodiscard]] double time_rounding(double day);

/// The pairs in the order of their times, those of one time as they were.
[[nodiscard]] TimeSeries in_order(const TimeSeries& series);

} // namespace velm
