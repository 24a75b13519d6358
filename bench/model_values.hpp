#pragma once

#include <cstddef>
#include <cstdint>
#include <random>

namespace velm::bench {

/// The range that a quantity has in models of rivers, lakes and estuaries. Within it values are uniform in their
/// logarithm: a model has as many ponds as it has bays.
struct Quantity {
    double least;
    double most;
};

inline constexpr Quantity volume{1e2, 1e8};         ///< m3: a brook's reach to a basin of an estuary
inline constexpr Quantity length{1e1, 2e4};         ///< m, along or across the flow
inline constexpr Quantity depth{5e-2, 8e1};         ///< m
inline constexpr Quantity flow{1e-3, 5e3};          ///< m3/s: a seep to a large river
inline constexpr Quantity concentration{1e-4, 5e2}; ///< mg/L: phosphate to suspended solids
inline constexpr Quantity load{1e-2, 5e4};          ///< kg/day: a fish market to a city
inline constexpr Quantity fraction{1e-3, 1};        ///< parts, exponents, slopes, roughness

/// Numbers that are the same in every run.
class ModelValues {
public:
    explicit ModelValues(std::uint32_t seed) : random_(seed) {}

    float draw(Quantity quantity);
    std::uint32_t bits() { return static_cast<std::uint32_t>(random_()); }
    /// From 0 up to `count`, which is not among them.
    std::size_t below(std::size_t count) { return random_() % count; }

private:
    std::mt19937 random_;
};

} // namespace velm::bench
