#pragma once

#include "water_balance/water_balance.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace velm {

/// One function's weight in a sum over functions: `forward` of its flow where that is positive, `backward` where it is
/// negative.
struct FlowTerm {
    std::size_t function = 0;
    double forward = 0;
    double backward = 0;
};

/// Segments that share the course of a sum but for its size. In a chain of a thousand segments that a river passes
/// through, one sum is worked out instead of a thousand.
struct ShareGroup {
    struct Member {
        std::int32_t segment = 0;
        double size = 1; ///< the segment's sum is so many times the group's
    };
    std::vector<FlowTerm> terms;
    std::vector<Member> members;
};

/// A balance's moments, or every so many of them and the last, with what the functions' flows are there.
class Samples {
public:
    Samples(const WaterBalance& balance, std::size_t stride);

    [[nodiscard]] const std::vector<double>& days() const { return days_; }
    [[nodiscard]] const FlowCourse::Moments& of(std::size_t function) const
    {
        return courses_.empty() ? balance_.at_moments(function) : courses_[function];
    }
    /// True when flows are straight between two of them.
    [[nodiscard]] bool are_straight() const { return courses_.empty() && balance_.moments_are_all(); }

private:
    const WaterBalance& balance_;
    std::vector<double> days_;
    std::vector<FlowCourse::Moments> courses_; ///< by function; empty when all moments are taken
};

/// Collects sums of segments into groups.
class ShareGroups {
public:
    /// Terms are in the order of their functions; there is at least one, and none is 0 in both weights.
    void add(std::int32_t segment, std::vector<FlowTerm> terms);

    [[nodiscard]] const std::vector<ShareGroup>& groups() const { return groups_; }
    /// How many of balance.moments() to go on by from one that is looked at to the next: 1, or more when there are so
    /// many groups and terms that all moments would take long.
    [[nodiscard]] std::size_t stride(const WaterBalance& balance) const;

private:
    std::vector<ShareGroup> groups_;
    std::size_t terms_ = 0;
    std::unordered_map<std::string, std::size_t> places_; ///< of groups, by their terms
};

} // namespace velm
