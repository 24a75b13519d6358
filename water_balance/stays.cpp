#include "water_balance/stays.hpp"

#include "water_balance/share_groups.hpp"

#include <algorithm>
#include <limits>

namespace velm {

namespace {

struct Peak {
    double flow = 0;
    double day = 0;
};

/// What flows out of a segment: positive flows by the paths that begin in it, negative ones by those that end in it.
/// Functions that never do are left out.
std::vector<FlowTerm> outflow_of(const WaterBalance& balance, std::int32_t segment)
{
    std::vector<FlowTerm> terms;
    for (const WaterShare& share : balance.shares(segment)) {
        const FlowCourse& course = balance.functions()[share.function].course;
        const FlowTerm term{share.function, course.greatest() > 0 ? share.fraction_out : 0,
                            course.least() < 0 ? share.fraction_in : 0};
        if (term.forward != 0 || term.backward != 0) {
            terms.push_back(term);
        }
    }
    return terms;
}

/// Of a single function, exactly.
Peak peak_of(const WaterBalance& balance, const FlowTerm& term)
{
    const FlowCourse& course = balance.functions()[term.function].course;
    const Peak forward{term.forward * course.greatest(), course.greatest_day()};
    const Peak backward{-term.backward * course.least(), course.least_day()};
    const bool is_backward =
        backward.flow > forward.flow || (backward.flow == forward.flow && backward.day < forward.day);
    return is_backward ? backward : forward;
}

/// A sum of flows that only add up is greatest at the time of a pair, so moments between pairs would not help.
Peak peak_of(const std::vector<FlowTerm>& terms, const Samples& samples)
{
    std::vector<double> outflow(samples.days().size());
    for (const FlowTerm& term : terms) {
        const std::vector<double>& flow = samples.of(term.function).flow;
        for (std::size_t i = 0; i < flow.size(); ++i) {
            outflow[i] += std::max(flow[i], 0.0) * term.forward + std::max(-flow[i], 0.0) * term.backward;
        }
    }
    const auto highest = std::max_element(outflow.begin(), outflow.end());
    return {*highest, samples.days()[static_cast<std::size_t>(highest - outflow.begin())]};
}

Stay stay_of(const WaterBalance& balance, std::int32_t segment, const Peak& peak)
{
    const double volume = std::max(balance.start_volume(segment), 0.0);
    const auto days = [&](double outflow) {
        return outflow > 0 ? volume / (outflow * seconds_a_day) : std::numeric_limits<double>::infinity();
    };
    return {days(balance.mean_flow(segment).out), days(peak.flow), peak.day, peak.flow};
}

} // namespace

std::vector<Stay> stays(const WaterBalance& balance)
{
    std::vector<Stay> result(balance.model().segments.size());
    ShareGroups groups;
    for (std::size_t i = 0; i < result.size(); ++i) {
        const auto segment = static_cast<std::int32_t>(i + 1);
        std::vector<FlowTerm> terms = outflow_of(balance, segment);
        if (terms.size() < 2) {
            result[i] = stay_of(balance, segment, terms.empty() ? Peak{} : peak_of(balance, terms.front()));
        } else {
            groups.add(segment, std::move(terms));
        }
    }
    const Samples samples(balance, groups.stride(balance));
    for (const ShareGroup& group : groups.groups()) {
        const Peak peak = peak_of(group.terms, samples);
        for (const ShareGroup::Member& member : group.members) {
            result[static_cast<std::size_t>(member.segment - 1)] =
                stay_of(balance, member.segment, {peak.flow * member.size, peak.day});
        }
    }
    return result;
}

} // namespace velm
