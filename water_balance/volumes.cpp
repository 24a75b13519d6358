#include "water_balance/volumes.hpp"

#include "water_balance/share_groups.hpp"

#include <algorithm>

namespace velm {

namespace {

/// What has been added to a volume between two moments: `begin` and `end` in m3, the net flow in m3/s, and the days.
/// With straight flows that is a parabola through both ends.
struct Stretch {
    double day = 0;
    double length = 0;
    double begin = 0;
    double end = 0;
    double flow = 0; ///< net, at the begin
    bool straight = false;

    [[nodiscard]] double at(double days) const
    {
        if (length <= 0) {
            return end;
        }
        const double part = days / length;
        if (!straight) {
            return begin + (end - begin) * part;
        }
        const double linear = flow * length * seconds_a_day;
        return begin + linear * part + (end - begin - linear) * part * part;
    }
    /// Days from its begin to where the parabola turns, or its length when it does not turn within.
    [[nodiscard]] double turn() const
    {
        const double linear = flow * length * seconds_a_day;
        const double bend = end - begin - linear;
        const double part = bend == 0 ? 1 : -linear / (2 * bend);
        return straight && part > 0 && part < 1 ? part * length : length;
    }
    /// The first day at which it has come to `level`, from above or from below; it does so within.
    [[nodiscard]] double day_of(double level) const
    {
        const bool rises = level > begin;
        const auto has_come = [&](double days) { return rises ? at(days) >= level : at(days) <= level; };
        double before = 0;
        double after = has_come(turn()) ? turn() : length;
        constexpr int halvings = 60;
        for (int i = 0; i < halvings; ++i) {
            const double middle = (before + after) / 2;
            (has_come(middle) ? after : before) = middle;
        }
        return day + after;
    }
};

/// The course of a group's sum over the run: what is added to a volume from day 0, m3.
class AddedCourse {
public:
    AddedCourse(const std::vector<FlowTerm>& terms, const Samples& samples)
        : samples_(samples), added_(samples.days().size()), flow_(samples.days().size())
    {
        for (const FlowTerm& term : terms) {
            const FlowCourse::Moments& course = samples.of(term.function);
            for (std::size_t i = 0; i < added_.size(); ++i) {
                added_[i] += term.forward * course.passed[i];
                flow_[i] += term.forward * course.flow[i];
            }
        }
        find_extremes();
    }

    [[nodiscard]] double end() const { return added_.back(); }

    struct Extreme {
        double added = 0;
        double day = 0;
    };
    /// The least, or the greatest, and its first day.
    [[nodiscard]] Extreme least() const { return extreme_of(least_, -1); }
    [[nodiscard]] Extreme greatest() const { return extreme_of(greatest_, 1); }

    /// The first day at which `level`, which is not 0, has been reached.
    [[nodiscard]] std::optional<double> day_of(double level) const
    {
        const bool rises = level > 0;
        const std::vector<double>& reached = rises ? greatest_ : least_;
        const auto first = std::partition_point(reached.begin(), reached.end(),
                                                [&](double one) { return rises ? one < level : one > level; });
        if (first == reached.end()) {
            return std::nullopt;
        }
        const auto place = static_cast<std::size_t>(first - reached.begin());
        return stretch(place - 1).day_of(level); // no level but 0 is reached at once
    }

private:
    [[nodiscard]] Stretch stretch(std::size_t place) const
    {
        const double day = samples_.days()[place];
        return {day,          samples_.days()[place + 1] - day, added_[place], added_[place + 1],
                flow_[place], samples_.are_straight()};
    }

    void find_extremes()
    {
        least_.assign(1, 0);
        greatest_.assign(1, 0);
        for (std::size_t i = 0; i + 1 < added_.size(); ++i) {
            const Stretch one = stretch(i);
            const double turned = (flow_[i] < 0) != (flow_[i + 1] < 0) ? one.at(one.turn()) : one.end;
            least_.push_back(std::min({least_.back(), one.end, turned}));
            greatest_.push_back(std::max({greatest_.back(), one.end, turned}));
        }
    }

    [[nodiscard]] Extreme extreme_of(const std::vector<double>& reached, double sign) const
    {
        const auto first = std::partition_point(reached.begin(), reached.end(),
                                                [&](double one) { return sign * one < sign * reached.back(); });
        const auto place = static_cast<std::size_t>(first - reached.begin());
        if (place == 0) {
            return {0, 0};
        }
        const Stretch one = stretch(place - 1);
        const bool at_end = one.end == reached.back();
        return {reached.back(), one.day + (at_end ? one.length : one.turn())};
    }

    const Samples& samples_;
    std::vector<double> added_;
    std::vector<double> flow_;
    std::vector<double> least_; ///< until each moment, from day 0
    std::vector<double> greatest_;
};

/// Flows and volumes are of single precision: what is past a bound by less is at it.
constexpr double rounding = 1e-6;

std::vector<FlowTerm> kept_by(const WaterBalance& balance, std::int32_t segment)
{
    std::vector<FlowTerm> terms;
    for (const WaterShare& share : balance.shares(segment)) {
        const double net = share.net_fraction();
        const FlowCourse& course = balance.functions()[share.function].course;
        if (net != 0 && (course.greatest() > 0 || course.least() < 0)) {
            terms.push_back({share.function, net, net});
        }
    }
    return terms;
}

VolumeRange range_of(const AddedCourse& course, double start, double size, double end_of_run)
{
    AddedCourse::Extreme least = course.least();
    AddedCourse::Extreme greatest = course.greatest();
    if (size < 0) {
        std::swap(least, greatest);
    }
    VolumeRange range{start,
                      start + size * course.end(),
                      start + size * least.added,
                      least.day,
                      start + size * greatest.added,
                      greatest.day,
                      std::nullopt,
                      std::nullopt};
    if (start > 0 && range.least <= 0) {
        const auto day = course.day_of(-start / size);
        range.dry_day = day && *day < end_of_run * (1 - rounding) ? day : std::nullopt;
    }
    if (start > 0 && range.greatest > full * start * (1 + rounding)) {
        range.full_day = course.day_of((full - 1) * start / size);
    }
    return range;
}

/// What has passed by of a function from day 0 to a day of the run, m3.
double passed_until(const WaterBalance& balance, std::size_t function, double day)
{
    const auto moments = balance.moments();
    const FlowCourse::Moments& course = balance.at_moments(function);
    const auto next = static_cast<std::size_t>(std::upper_bound(moments.begin(), moments.end(), day) - moments.begin());
    if (next == 0 || next == moments.size()) {
        return next == 0 ? 0 : course.passed.back();
    }
    const Stretch stretch{moments[next - 1],       moments[next] - moments[next - 1],
                          course.passed[next - 1], course.passed[next],
                          course.flow[next - 1],   balance.moments_are_all()};
    return stretch.at(day - stretch.day);
}

} // namespace

std::vector<VolumeRange> volume_ranges(const WaterBalance& balance)
{
    std::vector<VolumeRange> ranges(balance.model().segments.size());
    ShareGroups groups;
    for (std::size_t i = 0; i < ranges.size(); ++i) {
        const auto segment = static_cast<std::int32_t>(i + 1);
        const double start = balance.start_volume(segment);
        ranges[i] = {start, start, start, 0, start, 0, std::nullopt, std::nullopt};
        if (std::vector<FlowTerm> terms = kept_by(balance, segment); !terms.empty()) {
            groups.add(segment, std::move(terms));
        }
    }
    const Samples samples(balance, groups.stride(balance));
    for (const ShareGroup& group : groups.groups()) {
        const AddedCourse course(group.terms, samples);
        for (const ShareGroup::Member& member : group.members) {
            VolumeRange& range = ranges[static_cast<std::size_t>(member.segment - 1)];
            range = range_of(course, range.start, member.size, balance.end());
        }
    }
    return ranges;
}

std::vector<double> volume_course(const WaterBalance& balance, std::int32_t segment)
{
    std::vector<double> volumes(balance.moments().size(), balance.start_volume(segment));
    for (const FlowTerm& term : kept_by(balance, segment)) {
        const std::vector<double>& passed = balance.at_moments(term.function).passed;
        for (std::size_t i = 0; i < volumes.size(); ++i) {
            volumes[i] += term.forward * passed[i];
        }
    }
    return volumes;
}

std::vector<double> added_until(const WaterBalance& balance, std::int32_t segment, double day)
{
    std::vector<double> added;
    for (const WaterShare& share : balance.shares(segment)) {
        added.push_back(share.net_fraction() * passed_until(balance, share.function, day));
    }
    return added;
}

} // namespace velm
