#pragma once

#include "model/finding.hpp"

#include <array>

/// What an input file does not show of the model that it is exported from.
namespace velm::loss_rules {

using enum Level;

inline constexpr FindingRule digits_lost{
    "V301", "digits lost", note,
    "nothing, when the difference does not matter; else choose a larger unit or a smaller one"};
inline constexpr FindingRule value_changed{
    "V302", "value changed", warning, "choose a unit, with the scale or conversion factor, in which more digits show"};
inline constexpr FindingRule value_vanishes{
    "V303", "value vanishes", warning,
    "choose a unit, with the scale or conversion factor, in which the value is larger"};
inline constexpr FindingRule text_cut{"V304", "text cut", note, "shorten the text, when its end matters in the file"};

inline constexpr std::array all{&digits_lost, &value_changed, &value_vanishes, &text_cut};

} // namespace velm::loss_rules
