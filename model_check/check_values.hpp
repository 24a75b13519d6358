#pragma once

#include "model/model.hpp"
#include "model_check/file_findings.hpp"

#include <functional>
#include <string>
#include <vector>

namespace velm {

/// Runs all rules on what the values of `model` mean, and says each finding with its address. `gaps` are the data of
/// which the input file shows no value: nothing is said of their rows and series, nor, where they are flows or lead
/// water, of any water. Returns what was left out so, a sentence each.
[[nodiscard]] std::vector<std::string> check_values(const Model& model, const std::vector<Address>& gaps,
                                                    const std::function<void(Finding finding)>& report);

} // namespace velm
