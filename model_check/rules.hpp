#pragma once

#include "model_check/meaning_rule.hpp"

#include <span>
#include <vector>

namespace velm {

/// Rules on what values mean, a group a file. A rule is added as an entry of its group, and nowhere else but in
/// docs/findings.md; meaning_rules() has all groups.
[[nodiscard]] std::span<const MeaningRule> value_rules();

[[nodiscard]] const std::vector<MeaningRule>& meaning_rules();

/// All that can be found, by code.
[[nodiscard]] std::span<const FindingRule* const> finding_rules();

} // namespace velm
