#pragma once

#include "model_check/meaning_rule.hpp"

#include <span>
#include <vector>

namespace velm {

/// Rules on what values mean, a group a file. A rule is added as an entry of its group, and nowhere else but in
/// docs/findings.md; meaning_rules() has all groups.
[[nodiscard]] std::span<const MeaningRule> value_rules();
/// Flows, volumes and what touches the world outside.
[[nodiscard]] std::span<const MeaningRule> rules_of_water();
/// Times and values of series, parameters, constants and initial conditions.
[[nodiscard]] std::span<const MeaningRule> rules_of_series();
/// What the model has at all: items, names, sizes, zeros, the start.
[[nodiscard]] std::span<const MeaningRule> rules_of_items();

[[nodiscard]] const std::vector<MeaningRule>& meaning_rules();

/// All that can be found, by code.
[[nodiscard]] std::span<const FindingRule* const> finding_rules();

} // namespace velm
