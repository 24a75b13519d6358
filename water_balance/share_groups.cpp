#include "water_balance/share_groups.hpp"

#include <cmath>
#include <span>
#include <utility>

namespace velm {

namespace {

/// A tenth of a second.
constexpr std::size_t most_additions = 50'000'000;

std::vector<double> every(std::size_t stride, std::span<const double> all)
{
    std::vector<double> some;
    for (std::size_t i = 0; i < all.size(); i += stride) {
        some.push_back(all[i]);
    }
    if ((all.size() - 1) % stride != 0) {
        some.push_back(all.back());
    }
    return some;
}

/// The same bytes for terms that differ by less than single precision.
void append(std::string& key, const FlowTerm& term)
{
    const auto append_bytes = [&](const auto& value) {
        key.append(reinterpret_cast<const char*>(&value), sizeof value); // NOLINT(*-reinterpret-cast): bytes of a key
    };
    append_bytes(term.function);
    append_bytes(std::llround(term.forward * 1e6));
    append_bytes(std::llround(term.backward * 1e6));
}

} // namespace

void ShareGroups::add(std::int32_t segment, std::vector<FlowTerm> terms)
{
    double size = 0;
    for (const FlowTerm& term : terms) {
        for (const double weight : {term.forward, term.backward}) {
            size = std::abs(weight) > std::abs(size) ? weight : size;
        }
    }
    std::string key;
    for (FlowTerm& term : terms) {
        term.forward /= size;
        term.backward /= size;
        append(key, term);
    }
    const auto [place, is_new] = places_.try_emplace(std::move(key), groups_.size());
    if (is_new) {
        terms_ += terms.size();
        groups_.push_back({std::move(terms), {}});
    }
    groups_[place->second].members.push_back({segment, size});
}

std::size_t ShareGroups::stride(const WaterBalance& balance) const
{
    return 1 + terms_ * balance.moments().size() / most_additions;
}

Samples::Samples(const WaterBalance& balance, std::size_t stride)
    : balance_(balance), days_(every(stride, balance.moments()))
{
    for (std::size_t f = 0; f < balance.functions().size() && stride > 1; ++f) {
        const FlowCourse::Moments& all = balance.at_moments(f);
        courses_.push_back({every(stride, all.flow), every(stride, all.passed)});
    }
}

} // namespace velm
