#pragma once

#include "model/model.hpp"

#include <cstdint>
#include <string_view>
#include <vector>

namespace velm {

/// A series of a model and what it belongs to. Views and pointers last as long as the model.
struct SeriesItem {
    std::string_view table;  ///< of its pairs: "flow_value", "exchange_value", "boundary_value", ...
    std::int32_t owner = 0;  ///< flow field, exchange field, system or time-function type, from 1
    std::int32_t number = 0; ///< of the function, boundary or load in it, from 1
    const TimeSeries* series = nullptr;
    std::string_view unit{};        ///< of the values after their factor; empty where the kind has its own
    double factor = 1;              ///< scale factor times conversion factor
    std::int32_t segment = 0;       ///< of a boundary or a load, else 0
    std::string_view description{}; ///< of a function, ISO 8859-1; empty for boundaries and loads
    bool used = true;               ///< false for a time function that is kept for later, and not exported
};

/// All series, in the order of an input file: flows, dispersions, boundaries, loads, time functions.
[[nodiscard]] std::vector<SeriesItem> all_series(const Model& model);

} // namespace velm
