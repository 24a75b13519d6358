#include "water_balance/water_balance.hpp"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace velm {

namespace {

/// So much of the fractions is the rounding of single precision.
constexpr double fraction_rounding = 1e-6;

/// All functions together have at most so many moments kept, 16 bytes each.
constexpr std::size_t most_kept_moments = 4'000'000;
constexpr std::size_t fewest_moments = 100;

bool is_water(std::size_t field)
{
    return std::find(water_fields.begin(), water_fields.end(), static_cast<std::int32_t>(field)) != water_fields.end();
}

/// What one path adds to the share that its function has in a segment.
struct PathEnd {
    std::int32_t segment = 0;
    double in = 0;
    double out = 0;
};

std::vector<PathEnd> ends_of(const FlowFunction& function, std::size_t segments)
{
    const auto is_known = [&](std::int32_t segment) {
        return segment >= 0 && static_cast<std::size_t>(segment) <= segments;
    };
    std::vector<PathEnd> ends;
    for (const FlowPath& path : function.paths) {
        std::int32_t from = path.first_segment;
        std::int32_t to = path.second_segment;
        if (from == to || !is_known(from) || !is_known(to) || path.fraction == 0) {
            continue;
        }
        if (path.fraction < 0) {
            std::swap(from, to);
        }
        const double fraction = std::abs(double{path.fraction});
        ends.push_back({from, 0, fraction});
        ends.push_back({to, fraction, 0});
    }
    std::stable_sort(ends.begin(), ends.end(),
                     [](const PathEnd& one, const PathEnd& other) { return one.segment < other.segment; });
    return ends;
}

/// Adds up what `ends` has of one segment, from `at` on, and moves `at` behind it.
PathEnd sum_of_segment(const std::vector<PathEnd>& ends, std::size_t& at)
{
    PathEnd sum{ends[at].segment};
    for (; at < ends.size() && ends[at].segment == sum.segment; ++at) {
        sum.in += ends[at].in;
        sum.out += ends[at].out;
    }
    return sum;
}

/// The times of a course's pairs within the run and the run's ends, added to `times`, all rising and each once. False
/// when that would make more than `most`.
bool add_times(std::vector<double>& times, const FlowCourse& course, double end, std::size_t most)
{
    const auto all = course.times();
    const auto from = std::upper_bound(all.begin(), all.end(), 0.0F);
    const auto to = std::lower_bound(from, all.end(), end, [](float one, double other) { return one < other; });
    if (static_cast<std::size_t>(to - from) > most) {
        return false;
    }
    if (std::includes(times.begin(), times.end(), from, to)) {
        return true;
    }
    std::vector<double> together;
    std::set_union(times.begin(), times.end(), from, to, std::back_inserter(together));
    together.erase(std::unique(together.begin(), together.end()), together.end());
    times = std::move(together);
    return times.size() <= most;
}

std::vector<double> ends_of_run(double end)
{
    return end > 0 ? std::vector<double>{0, end} : std::vector<double>{0};
}

} // namespace

double WaterShare::net_fraction() const
{
    const double net = fraction_in - fraction_out;
    return std::abs(net) <= fraction_rounding * (fraction_in + fraction_out) ? 0 : net;
}

WaterBalance::WaterBalance(const Model& model)
    : model_(model), end_(std::max(double{model.julian_end_time}, 0.0)), first_share_(model.segments.size() + 2),
      outside_(model.segments.size())
{
    std::vector<std::pair<std::int32_t, WaterShare>> found;
    for (std::size_t field = 1; field <= model.flow_fields.size(); ++field) {
        const FlowField& flows = model.flow_fields[field - 1];
        const double factor = double{flows.scale_factor} * double{flows.conversion_factor};
        for (std::size_t number = 1; is_water(field) && number <= flows.functions.size(); ++number) {
            add_function({static_cast<std::int32_t>(field), static_cast<std::int32_t>(number),
                          FlowCourse(flows.functions[number - 1].series, factor, end_)},
                         flows.functions[number - 1], found);
        }
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const auto& one, const auto& other) { return one.first < other.first; });
    for (const auto& [segment, share] : found) {
        ++first_share_[static_cast<std::size_t>(segment) + 1];
        shares_.push_back(share);
    }
    for (std::size_t segment = 1; segment < first_share_.size(); ++segment) {
        first_share_[segment] += first_share_[segment - 1];
    }
    for (const WaterShare& share : shares_) {
        const FlowCourse& course = functions_[share.function].course;
        totals_.stored += share.net_fraction() * (course.forward() - course.backward());
    }
    add_contacts();
    choose_moments();
}

void WaterBalance::add_function(WaterFunction function, const FlowFunction& paths,
                                std::vector<std::pair<std::int32_t, WaterShare>>& found)
{
    const FlowCourse& course = function.course;
    const std::vector<PathEnd> ends = ends_of(paths, model_.segments.size());
    for (std::size_t at = 0; at < ends.size();) {
        const PathEnd sum = sum_of_segment(ends, at);
        if (sum.segment == 0) { // what leaves the world outside enters the model
            function.from_outside = sum.out * course.forward() + sum.in * course.backward();
            function.to_outside = sum.in * course.forward() + sum.out * course.backward();
            totals_.in += function.from_outside;
            totals_.out += function.to_outside;
        } else {
            found.push_back({sum.segment,
                             {.function = functions_.size(),
                              .fraction_in = sum.in,
                              .fraction_out = sum.out,
                              .mean_in = sum.in * course.mean_forward() + sum.out * course.mean_backward(),
                              .mean_out = sum.out * course.mean_forward() + sum.in * course.mean_backward()}});
        }
    }
    functions_.push_back(std::move(function));
}

double WaterBalance::start_volume(std::int32_t segment) const
{
    return double{model_.segments[static_cast<std::size_t>(segment - 1)].volume} * double{model_.volume_scale_factor} *
           double{model_.volume_conversion_factor};
}

std::span<const WaterShare> WaterBalance::shares(std::int32_t segment) const
{
    const std::size_t first = first_share_[static_cast<std::size_t>(segment)];
    return std::span(shares_).subspan(first, first_share_[static_cast<std::size_t>(segment) + 1] - first);
}

MeanFlow WaterBalance::mean_flow(std::int32_t segment) const
{
    MeanFlow sum;
    for (const WaterShare& share : shares(segment)) {
        sum.in += share.mean_in;
        sum.out += share.mean_out;
    }
    return sum;
}

const OutsideContact& WaterBalance::outside(std::int32_t segment) const
{
    return outside_[static_cast<std::size_t>(segment - 1)];
}

void WaterBalance::choose_moments()
{
    const std::size_t functions = std::max<std::size_t>(functions_.size(), 1);
    const std::size_t most = std::clamp(most_kept_moments / functions, fewest_moments, most_moments);
    moments_ = ends_of_run(end_);
    for (std::size_t f = 0; f < functions_.size() && moments_are_all_; ++f) {
        moments_are_all_ = add_times(moments_, functions_[f].course, end_, most);
    }
    if (!moments_are_all_) {
        moments_ = ends_of_run(end_);
        for (std::size_t f = 0; f < std::min(functions_.size(), most / 4); ++f) {
            moments_.push_back(functions_[f].course.greatest_day());
            moments_.push_back(functions_[f].course.least_day());
        }
        const std::size_t even = most - moments_.size();
        for (std::size_t i = 1; i <= even; ++i) {
            moments_.push_back(end_ * static_cast<double>(i) / static_cast<double>(even + 1));
        }
        std::sort(moments_.begin(), moments_.end());
        moments_.erase(std::unique(moments_.begin(), moments_.end()), moments_.end());
    }
    for (const WaterFunction& function : functions_) {
        at_moments_.push_back(function.course.at_moments(moments_));
    }
}

bool flows_are_elsewhere(const Model& model)
{
    return !model.segments.empty() && model.segments.front().flow_option == 3;
}

} // namespace velm
