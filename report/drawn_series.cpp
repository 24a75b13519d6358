#include "report/drawn_series.hpp"

#include <algorithm>
#include <limits>

namespace velm {
namespace {

/// Where stretches without a gap begin, and the end.
std::vector<std::size_t> stretches(const std::vector<float>& times, const SeriesFacts& facts)
{
    std::vector<std::size_t> begins{0};
    if (facts.gaps > 0) {
        for (std::size_t i = 1; i < times.size(); ++i) {
            if (times[i] - times[i - 1] > facts.longest_step) {
                begins.push_back(i);
            }
        }
    }
    begins.push_back(times.size());
    return begins;
}

void keep(DrawnSeries& drawn, const TimeSeries& series, std::size_t at)
{
    drawn.times.push_back(series.times[at]);
    drawn.values.push_back(series.values[at]);
}

/// Least and greatest of the pairs from `begin` to `end`, in the order of their times.
void keep_extremes(DrawnSeries& drawn, const TimeSeries& series, std::size_t begin, std::size_t end)
{
    const auto first = series.values.begin() + static_cast<std::ptrdiff_t>(begin);
    const auto [least, greatest] = std::minmax_element(first, series.values.begin() + static_cast<std::ptrdiff_t>(end));
    const auto [earlier, later] = std::minmax({least - series.values.begin(), greatest - series.values.begin()});
    keep(drawn, series, static_cast<std::size_t>(earlier));
    if (later != earlier) {
        keep(drawn, series, static_cast<std::size_t>(later));
    }
}

} // namespace

DrawnSeries drawn_series(const TimeSeries& series, const SeriesFacts& facts, std::size_t most_pairs)
{
    const bool sorted = std::is_sorted(series.times.begin(), series.times.end());
    const TimeSeries ordered = sorted ? TimeSeries{} : in_order(series);
    const TimeSeries& pairs = sorted ? series : ordered;
    DrawnSeries drawn;
    drawn.thinned = pairs.times.size() > most_pairs;
    const std::size_t bucket = drawn.thinned ? (2 * pairs.times.size() + most_pairs - 1) / most_pairs : 1;
    const std::vector<std::size_t> begins = stretches(pairs.times, facts);
    for (std::size_t s = 0; s + 1 < begins.size() && !pairs.times.empty(); ++s) {
        if (s > 0) {
            drawn.times.push_back((pairs.times[begins[s] - 1] + pairs.times[begins[s]]) / 2);
            drawn.values.push_back(std::numeric_limits<float>::quiet_NaN());
        }
        keep(drawn, pairs, begins[s]);
        for (std::size_t at = begins[s] + 1; at + 1 < begins[s + 1]; at += bucket) {
            keep_extremes(drawn, pairs, at, std::min(at + bucket, begins[s + 1] - 1));
        }
        if (begins[s] + 1 < begins[s + 1]) {
            keep(drawn, pairs, begins[s + 1] - 1);
        }
    }
    return drawn;
}

std::size_t most_pairs_of_one(std::span<const std::size_t> pairs, std::size_t budget)
{
    std::vector<std::size_t> lengths(pairs.begin(), pairs.end());
    std::sort(lengths.begin(), lengths.end());
    std::size_t left = budget;
    for (std::size_t i = 0; i < lengths.size(); ++i) {
        const std::size_t share = left / (lengths.size() - i);
        if (lengths[i] > share) {
            return std::max<std::size_t>(share, 64);
        }
        left -= lengths[i];
    }
    return std::numeric_limits<std::size_t>::max() / 4;
}

} // namespace velm
