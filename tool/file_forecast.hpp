#pragma once

#include "model/model.hpp"

#include <cstdint>

namespace velm {

struct FileForecast {
    std::uint64_t records = 0;
    std::uint64_t bytes = 0;
};

/// How large the model's input file will be, to the byte.
///
/// Records of fixed columns have one length whatever their values; free-form records have their own length for
/// every real, which free_real_length gives.
[[nodiscard]] FileForecast forecast_file(const Model& model);

/// Characters of a real in a free-form record with the two blanks, or the blank and the minus sign, before it:
/// 10 below 1 (0.500000), 9 from 1 on (12.5000), 14 in exponent form (5.000000E-02). The value is finite.
[[nodiscard]] std::uint64_t free_real_length(float value);

} // namespace velm
