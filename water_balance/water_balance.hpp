#pragma once

#include "model/model.hpp"
#include "water_balance/flow_course.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace velm {

/// Flow fields that carry water, by number: surface water, pore water, evaporation and precipitation. The solids of
/// fields 3 to 5 carry none.
constexpr std::array<std::int32_t, 3> water_fields{1, 2, 6};

/// The most moments of the run at which flows of many functions are put together.
constexpr std::size_t most_moments = 10'000;

/// A flow function of a water field.
struct WaterFunction {
    std::int32_t field = 0;  ///< from 1
    std::int32_t number = 0; ///< from 1 in its field
    FlowCourse course;
    double from_outside = 0; ///< m3 over the run, by its paths from and to segment 0
    double to_outside = 0;
};

/// What one function brings to a segment and takes from it. Fractions are sums over its paths; a path of a negative
/// fraction counts the other way round.
struct WaterShare {
    std::size_t function = 0; ///< index into WaterBalance::functions()
    double fraction_in = 0;   ///< of paths that end in the segment
    double fraction_out = 0;  ///< of paths that begin in it
    double mean_in = 0;       ///< m3/s, mean over the run; negative flows enter where positive ones leave
    double mean_out = 0;      ///< m3/s

    /// What stays of the function's flow; exactly 0 where the fractions differ only by single precision.
    [[nodiscard]] double net_fraction() const;
};

/// Where a segment touches the world outside (segment 0).
struct OutsideContact {
    bool any = false; ///< a flow path or an exchange pair of any field begins or ends outside
    /// Field, function and path by which water of field 1 or 2 comes in at some time of the run; 0 when none does.
    std::array<std::int32_t, 3> entry{};
    /// Field 1 or 2, function and pair of an exchange that leads outside and is not 0 all through the run; 0 when none
    /// is.
    std::array<std::int32_t, 3> mixing{};

    [[nodiscard]] bool water_enters() const { return entry[0] != 0; }
    [[nodiscard]] bool mixes() const { return mixing[0] != 0; }
};

/// Means of a segment over the run, m3/s.
struct MeanFlow {
    double in = 0;
    double out = 0;
};

/// m3 over the run.
struct WaterTotals {
    double in = 0;     ///< from the world outside
    double out = 0;    ///< to it
    double stored = 0; ///< what the segments' volumes grow by; negative where they shrink
};

/// What a model's water does, from its flow paths and series alone; nothing is simulated.
///
/// A positive flow goes from a path's first segment to its second; it is the function's flow times the path's
/// fraction, in m3/s after its field's factors. A series is straight between its pairs and keeps its first and last
/// value outside them. Segments of type 1 are surface water, 2 water below it, 3 surface bed, 4 bed below it; other
/// codes are the engine's and are not judged. A day has 86,400 s. Volumes are in m3 after the model's volume
/// factors. The run goes from day 0 to the model's end time; of one that ends at 0 or before, means are the values of
/// day 0. Paths that name a segment which the model does not have, or lead from a segment to itself, carry nothing.
/// A model whose first segment has flow option 3 takes its flows from another file: ask flows_are_elsewhere() first.
///
/// Integrals are exact, in double precision. Results that need many functions at once (volumes over the run, the
/// highest outflow) are evaluated at moments(): all times of all pairs of the water's functions when they are at most
/// most_moments, else as many moments spread evenly and the days of each function's extremes.
class WaterBalance {
public:
    /// `model` outlives the balance. Costs one pass over the pairs of fields 1, 2 and 6, and over all paths.
    explicit WaterBalance(const Model& model);

    [[nodiscard]] const Model& model() const { return model_; }
    /// The run's length in days, at least 0.
    [[nodiscard]] double end() const { return end_; }
    [[nodiscard]] std::span<const WaterFunction> functions() const { return functions_; }

    // Segments are numbered from 1, as in the model.

    /// Volume at the start, m3.
    [[nodiscard]] double start_volume(std::int32_t segment) const;
    /// The functions that pass through a segment, by field and number.
    [[nodiscard]] std::span<const WaterShare> shares(std::int32_t segment) const;
    [[nodiscard]] MeanFlow mean_flow(std::int32_t segment) const;
    [[nodiscard]] const OutsideContact& outside(std::int32_t segment) const;
    [[nodiscard]] const WaterTotals& totals() const { return totals_; }

    /// Days, rising from 0 to the end; day 0 alone in a run without length.
    [[nodiscard]] std::span<const double> moments() const { return moments_; }
    /// True when moments() has the times of all pairs, so that flows are straight between two of them.
    [[nodiscard]] bool moments_are_all() const { return moments_are_all_; }
    /// A function's flow and what has passed by, at each of moments().
    [[nodiscard]] const FlowCourse::Moments& at_moments(std::size_t function) const { return at_moments_[function]; }

private:
    void add_function(WaterFunction function, const FlowFunction& paths,
                      std::vector<std::pair<std::int32_t, WaterShare>>& found);
    void add_contacts();
    void add_water_entries(const WaterFunction& function);
    void add_exchanges(const ExchangeField& field, std::int32_t number);
    void choose_moments();

    const Model& model_;
    double end_;
    std::vector<WaterFunction> functions_;
    std::vector<WaterShare> shares_;       ///< by segment
    std::vector<std::size_t> first_share_; ///< of each segment from 0, and one more
    std::vector<OutsideContact> outside_;
    std::vector<double> moments_;
    std::vector<FlowCourse::Moments> at_moments_;
    bool moments_are_all_ = true;
    WaterTotals totals_;
};

/// True when segment 1 has flow option 3: the flows come from the hydrodynamic file, and a balance of those in the
/// model says nothing.
[[nodiscard]] bool flows_are_elsewhere(const Model& model);

} // namespace velm
