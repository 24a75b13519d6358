#pragma once

#include "water_balance/water_balance.hpp"

#include <cstdint>
#include <optional>
#include <vector>

namespace velm {

/// "Full" means this many times the volume at the start.
constexpr double full = 10;

/// What a segment's volume does over the run, by the flows of all water fields; m3 and days. Volumes may fall below 0,
/// which no river's does: it says how much is missing.
struct VolumeRange {
    double start = 0;
    double end = 0;
    double least = 0;
    double least_day = 0;
    double greatest = 0;
    double greatest_day = 0;
    std::optional<double> dry_day;  ///< first day at 0, before the end; only of a volume above 0 at the start
    std::optional<double> full_day; ///< first day above `full` times the start's volume, which is above 0
};

/// For each segment. At WaterBalance::moments() and, where these are all, exactly between them; of a model in which
/// many segments keep water of many functions, at fewer moments, spread evenly, so that the time stays bounded.
[[nodiscard]] std::vector<VolumeRange> volume_ranges(const WaterBalance& balance);

/// A segment's volume in m3 at each of balance.moments().
[[nodiscard]] std::vector<double> volume_course(const WaterBalance& balance, std::int32_t segment);

/// What each of a segment's shares has added to its volume from day 0 to `day`, m3; in the order of
/// balance.shares(segment).
[[nodiscard]] std::vector<double> added_until(const WaterBalance& balance, std::int32_t segment, double day);

} // namespace velm
