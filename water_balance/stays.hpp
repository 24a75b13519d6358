#pragma once

#include "water_balance/water_balance.hpp"

#include <vector>

namespace velm {

/// How long water stays in a segment: its volume at the start over what flows out of it. Days; infinite where nothing
/// flows out.
struct Stay {
    double mean = 0;            ///< at the mean outflow of the run
    double shortest = 0;        ///< at the highest outflow
    double shortest_day = 0;    ///< the first day of that outflow; 0 where nothing flows out
    double highest_outflow = 0; ///< m3/s
};

/// For each segment; volumes of 0 or below stay 0 days. Where several functions leave a segment, the highest outflow
/// is that at WaterBalance::moments(), or, in a model of many segments and functions, at fewer of them.
[[nodiscard]] std::vector<Stay> stays(const WaterBalance& balance);

} // namespace velm
