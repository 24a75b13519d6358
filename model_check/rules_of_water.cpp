#include "model/items.hpp"
#include "model/real_in_words.hpp"
#include "model/words.hpp"
#include "model_check/item_words.hpp"
#include "model_check/rules.hpp"
#include "water_balance/connections.hpp"
#include "water_balance/stays.hpp"
#include "water_balance/volumes.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>
#include <vector>

namespace velm {

namespace {

Address segment_at(std::int32_t segment, std::string_view column)
{
    return {"segment", column, {segment}};
}

std::int32_t number_of_segments(const MeantModel& meant)
{
    return static_cast<std::int32_t>(meant.model.segments.size());
}

/// The share of a segment that has added most by a day, or taken most; `added` is signed. A function of the segment
/// did, for its volume has changed.
struct Mover {
    const WaterShare* share = nullptr;
    std::string function; ///< in words
    double added = 0;     ///< m3
};

Mover greatest_mover(const WaterBalance& water, std::int32_t segment, double day, bool taking)
{
    const std::vector<double> added = added_until(water, segment, day);
    const auto found = taking ? std::ranges::min_element(added) : std::ranges::max_element(added);
    const WaterShare& share = water.shares(segment)[static_cast<std::size_t>(found - added.begin())];
    const WaterFunction& function = water.functions()[share.function];
    return {&share, item_in_words({"flow_function", "", {function.field, function.number}}), *found};
}

/// What to balance where a volume leaves its bounds by this function.
std::string balance_in_words(const Mover& mover, std::int32_t segment)
{
    double in = mover.share->fraction_in;
    double out = mover.share->fraction_out;
    const bool turned = (mover.added > 0) != (in > out);
    if (turned) {
        std::swap(in, out);
    }
    return "let as much leave segment " + std::to_string(segment) + " as enters it: of " + mover.function + ", " +
           in_figures(in) + " flows in and " + in_figures(out) + " out" + (turned ? " where its flow is below 0" : "");
}

void look_for_dry(const MeantModel& meant, const ReportMeaning& report)
{
    const std::vector<VolumeRange> ranges = volume_ranges(meant.water);
    for (std::int32_t segment = 1; segment <= number_of_segments(meant); ++segment) {
        const VolumeRange& range = ranges[static_cast<std::size_t>(segment - 1)];
        if (!range.dry_day) {
            continue;
        }
        const Mover mover = greatest_mover(meant.water, segment, *range.dry_day, true);
        report(segment_at(segment, "volume"),
               "segment " + std::to_string(segment) + " runs dry on " + meant.dates.in_words(*range.dry_day) + ": of " +
                   in_figures(range.start) + " m3 at the start, " + mover.function + " takes most (" +
                   in_figures(-mover.added) + " m3 by then)",
               balance_in_words(mover, segment));
    }
}

void look_for_full(const MeantModel& meant, const ReportMeaning& report)
{
    const std::vector<VolumeRange> ranges = volume_ranges(meant.water);
    for (std::int32_t segment = 1; segment <= number_of_segments(meant); ++segment) {
        const VolumeRange& range = ranges[static_cast<std::size_t>(segment - 1)];
        if (!range.full_day) {
            continue;
        }
        const Mover mover = greatest_mover(meant.water, segment, *range.full_day, false);
        report(segment_at(segment, "volume"),
               "segment " + std::to_string(segment) + " holds more than " + in_figures(full) + " times the " +
                   in_figures(range.start) + " m3 of the start from " + meant.dates.in_words(*range.full_day) +
                   ", on: " + mover.function + " brings most (" + in_figures(mover.added) + " m3 by then)",
               balance_in_words(mover, segment));
    }
}

/// For each segment whether the system has a boundary there.
std::vector<bool> bounded_segments(const System& system, std::size_t segments)
{
    std::vector<bool> bounded(segments);
    for (const SegmentSeries& boundary : system.boundaries.items) {
        if (boundary.segment >= 1 && static_cast<std::size_t>(boundary.segment) <= segments) {
            bounded[static_cast<std::size_t>(boundary.segment - 1)] = true;
        }
    }
    return bounded;
}

void look_for_missing_boundary(const MeantModel& meant, const ReportMeaning& report)
{
    for_each_numbered(meant.model.systems, [&](const System& one, std::int64_t system) {
        const std::vector<bool> bounded = bounded_segments(one, meant.model.segments.size());
        for (std::int32_t segment = 1; segment <= number_of_segments(meant); ++segment) {
            const OutsideContact& outside = meant.water.outside(segment);
            if (bounded[static_cast<std::size_t>(segment - 1)] || !(outside.water_enters() || outside.mixes())) {
                continue;
            }
            const auto& [field, function, part] = outside.water_enters() ? outside.entry : outside.mixing;
            const std::string way =
                item_in_words({outside.water_enters() ? "flow_path" : "exchange_pair", "", {field, function, part}});
            report({"system", "name", {system}},
                   (outside.water_enters() ? "water enters segment " : "water from outside mixes into segment ") +
                       std::to_string(segment) + " by " + way + ", and system " + std::to_string(system) +
                       " has no boundary there",
                   "give system " + std::to_string(system) + " a boundary at segment " + std::to_string(segment) +
                       ", of 0 where the water brings none of it");
        }
    });
}

void look_for_inner_boundary(const MeantModel& meant, const ReportMeaning& report)
{
    for_each_numbered(meant.model.systems, [&](const System& one, std::int64_t system) {
        for_each_numbered(one.boundaries.items, [&](const SegmentSeries& item, std::int64_t boundary) {
            const Address address{"boundary", "segment", {system, boundary}};
            if (item.segment >= 1 && item.segment <= number_of_segments(meant) &&
                !meant.water.outside(item.segment).any) {
                report(address,
                       item_in_words(address) + " is at segment " + std::to_string(item.segment) +
                           ", which neither a flow path nor an exchange pair connects to the outside",
                       "name the segment where water enters or leaves the model, or make a load of it");
            }
        });
    });
}

bool is_water(const Segment& segment)
{
    return segment.type == 1 || segment.type == 2;
}

/// The water segment whose stay by `days` is the shortest and below `step`, and how many more there are; 0 for none.
template <class Days>
std::pair<std::int32_t, std::int64_t> shortest_below(const MeantModel& meant, const std::vector<Stay>& all, double step,
                                                     Days days)
{
    constexpr double rounding = 1 - 1e-6; // of a step in single precision
    std::int32_t shortest = 0;
    std::int64_t found = 0;
    for (std::int32_t segment = 1; segment <= number_of_segments(meant); ++segment) {
        const auto place = static_cast<std::size_t>(segment - 1);
        if (is_water(meant.model.segments[place]) && meant.water.start_volume(segment) > 0 &&
            days(all[place]) < step * rounding) {
            ++found;
            shortest = shortest == 0 || days(all[place]) < days(all[static_cast<std::size_t>(shortest - 1)]) ? segment
                                                                                                             : shortest;
        }
    }
    return {shortest, found - 1};
}

std::string in_others(std::int64_t others)
{
    return others == 0 ? "" : ", and so it is in " + counted(static_cast<std::size_t>(others), "more segment");
}

void look_for_long_steps(const MeantModel& meant, const ReportMeaning& report)
{
    if (meant.water.end() <= 0) {
        return;
    }
    const Model& model = meant.model;
    const std::vector<Stay> all = stays(meant.water);
    if (model.time_optimization == 0) {
        const auto [segment, others] =
            shortest_below(meant, all, model.maximum_time_step, [](const Stay& stay) { return stay.mean; });
        if (segment != 0) {
            const Stay& stay = all[static_cast<std::size_t>(segment - 1)];
            const std::string days = in_figures(stay.mean) + " days";
            report({"model", "maximum_time_step", {1}},
                   real_in_words(model.maximum_time_step) + " days are longer than water stays in segment " +
                       std::to_string(segment) + ", " + days + " at its mean outflow (shortest on " +
                       meant.dates.in_words(stay.shortest_day) + ": " + in_figures(stay.shortest) + " days)" +
                       in_others(others),
                   "make the maximum time step shorter than " + days + ", or the segment larger");
        }
    }
    const auto [segment, others] =
        shortest_below(meant, all, model.minimum_time_step, [](const Stay& stay) { return stay.shortest; });
    if (segment != 0) {
        const Stay& stay = all[static_cast<std::size_t>(segment - 1)];
        const std::string days = in_figures(stay.shortest) + " days";
        report({"model", "minimum_time_step", {1}},
               real_in_words(model.minimum_time_step) + " days are longer than water stays in segment " +
                   std::to_string(segment) + " at its highest outflow, " + days + " (on " +
                   meant.dates.in_words(stay.shortest_day) + ")" + in_others(others),
               "make the minimum time step shorter than " + days + ", or the segment larger");
    }
}

void look_for_lone_segments(const MeantModel& meant, const ReportMeaning& report)
{
    if (number_of_segments(meant) < 2) {
        return;
    }
    const auto connections = connections_of(meant.model);
    for (std::int32_t segment = 1; segment <= number_of_segments(meant); ++segment) {
        const auto place = static_cast<std::size_t>(segment - 1);
        if (is_water(meant.model.segments[place]) && connections[place].empty()) {
            report(segment_at(segment, "name"),
                   "segment " + std::to_string(segment) + " has neither a flow path nor an exchange pair",
                   "lead a flow path through segment " + std::to_string(segment) + ", or remove it");
        }
    }
}

using enum Level;

constexpr std::array<MeaningRule, 6> water_rules{{
    {{"V501", "runs dry", warning, "let as much water enter the segment as leaves it"}, look_for_dry, true},
    {{"V502", "fills up", warning, "let as much water leave the segment as enters it"}, look_for_full, true},
    {{"V506", "enters without concentration", warning, "give the system a boundary at the segment"},
     look_for_missing_boundary,
     true},
    {{"V507", "boundary apart", warning, "name a segment where water enters or leaves the model, or make a load of it"},
     look_for_inner_boundary,
     true},
    {{"V508", "step too long", warning, "make the time step shorter than the water stays in the segment"},
     look_for_long_steps,
     true},
    {{"V516", "out of reach", warning, "lead a flow path through the segment, or remove it"},
     look_for_lone_segments,
     true},
}};

} // namespace

std::span<const MeaningRule> rules_of_water()
{
    return water_rules;
}

} // namespace velm
