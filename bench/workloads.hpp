#pragma once

#include "model/model.hpp"

#include <cstddef>
#include <string_view>

namespace velm::bench {

/// A model of so many rows in a database, or as many as is usual for its kind. Throws std::invalid_argument for another
/// name than these:
///
///     segments     99,999 segments, the most that five columns can number, with 40 parameters in use
///     boundaries   8 systems, 12 boundaries and 12 loads each, 100,000 hourly time pairs in each of them
///     flows        6 flow fields of 300 functions, each a path in and out and 1,000 daily time pairs
[[nodiscard]] Model workload(std::string_view name, std::size_t rows = 0);

/// What the model holds in single precision.
[[nodiscard]] std::size_t number_of_reals(const Model& model);

} // namespace velm::bench
