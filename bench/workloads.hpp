#pragma once

#include "model/model.hpp"

#include <cstddef>
#include <string_view>

namespace velm::bench {

/// 99,999 segments, the most that five columns can number, and 40 parameters in use: 20 types of two instances.
/// Neither systems nor flows: what is measured is the geometry and the assignments.
[[nodiscard]] Model segment_model();

/// 8 systems, 12 boundaries and 12 loads each, `pairs` hourly time pairs in each of them.
[[nodiscard]] Model boundary_model(std::size_t pairs = 100'000);

/// 6 flow fields of 300 functions, each a single path and 1,000 daily time pairs.
[[nodiscard]] Model flow_model();

/// One system with as many loads as it takes for `pairs` time pairs, 100,000 at most in each.
[[nodiscard]] Model model_of_pairs(std::size_t pairs);

/// "segments", "boundaries" or "flows". Throws std::invalid_argument for another name.
[[nodiscard]] Model workload(std::string_view name);

/// Bytes of the model's numbers in single precision, and of its names: what it holds, however it is stored.
[[nodiscard]] std::size_t data_size(const Model& model);

/// Records that hold its numbers: segments, parameter values and time pairs.
[[nodiscard]] std::size_t row_count(const Model& model);

} // namespace velm::bench
