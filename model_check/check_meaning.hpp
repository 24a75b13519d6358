#pragma once

#include "model/model.hpp"
#include "model_check/finding.hpp"

#include <functional>
#include <string>

namespace velm {

/// Called with each value that is out of its meaning: the kind, the value's place in the model, and a message that
/// quotes it.
using ReportValue = std::function<void(FindingKind kind, const Address& address, std::string message)>;

/// Finds values that no file form forbids but that cannot be meant. Of a series, the first of each kind is reported.
/// What is not used, and so not exported, is not looked at.
void check_meaning(const Model& model, const ReportValue& report);

} // namespace velm
