#pragma once

#include "model_diff/model_diff.hpp"

#include <iosfwd>
#include <span>
#include <string>
#include <string_view>

namespace velm {

/// A line for each difference: "boundaries: boundary 2 of NITRATE: 31 of 365 pairs differ, days 120 to 150, largest
/// change +0.4". With `all`, below it a line for each number.
[[nodiscard]] std::string difference_lines(std::span<const Difference> found, bool all);

/// A line for each section that differs: "boundaries: 1 item added, 2 values changed, 1 series changed".
[[nodiscard]] std::string difference_summary(std::span<const Difference> found);

/// Writes one JSON object; docs/findings.md describes it. `all` lists every number. `form_alone` says that the files
/// differ, but in nothing that a model holds.
void write_difference_json(std::ostream& out, std::span<const Difference> found, std::string_view old_file,
                           std::string_view new_file, bool form_alone, bool all);

} // namespace velm
