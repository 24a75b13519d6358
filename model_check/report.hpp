#pragma once

#include "model_check/finding.hpp"

#include <span>
#include <string>
#include <string_view>

namespace velm {

/// A line for each finding: "river.inp:12:1: error V101 field overflow: segments, volume: what is wrong; a remedy".
[[nodiscard]] std::string text_report(std::span<const FileFindings> files);

/// "3 errors, 1 warning, 12 notes"
[[nodiscard]] std::string counts_in_words(std::span<const FileFindings> files);

/// One JSON object; docs/findings.md describes it.
[[nodiscard]] std::string json_report(std::span<const FileFindings> files);

/// A log in the Static Analysis Results Interchange Format 2.1.0. `version` is this program's.
[[nodiscard]] std::string sarif_report(std::span<const FileFindings> files, std::string_view version);

/// Where a finding is, in words: "segments, volume" or "table segment, segment 3, column volume". May be empty.
[[nodiscard]] std::string place_in_words(const Finding& finding);

} // namespace velm
