#pragma once

#include "model/model.hpp"
#include "water_balance/series_facts.hpp"

#include <cstddef>
#include <span>
#include <vector>

namespace velm {

/// What a plot shows of a series: its pairs in the order of their times, and between the two sides of a gap a value
/// that is no number.
struct DrawnSeries {
    std::vector<float> times;
    std::vector<float> values;
    bool thinned = false; ///< stretches of pairs are shown by their least and their greatest value
};

/// At most about `most_pairs` of the series' pairs; `facts` are its own. First and last pair, every peak and both sides
/// of every gap stay.
[[nodiscard]] DrawnSeries drawn_series(const TimeSeries& series, const SeriesFacts& facts, std::size_t most_pairs);

/// How many pairs of each series can be drawn when all of them together are to have at most `budget`: short series
/// stay whole, long ones have the same number. At least 64.
[[nodiscard]] std::size_t most_pairs_of_one(std::span<const std::size_t> pairs, std::size_t budget);

} // namespace velm
