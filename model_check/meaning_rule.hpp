#pragma once

#include "model/address.hpp"
#include "model/finding.hpp"
#include "model/model.hpp"
#include "water_balance/run_dates.hpp"
#include "water_balance/water_balance.hpp"

#include <functional>
#include <string>

namespace velm {

/// What the rules on a model's meaning look at. Its values are those that the input file shows, which has two decimals
/// of a fraction of 1/3.
struct MeantModel {
    const Model& model;
    const WaterBalance& water; ///< of this model
    const RunDates& dates;     ///< of this model
};

/// Called with each finding of a rule: the datum at which it stands, a message that quotes its value and names items by
/// their tables' words and numbers ("flow function 2 of flow field 1"), and what to do about this case; where that is
/// empty, the rule's own remedy holds.
using ReportMeaning = std::function<void(const Address& address, std::string message, std::string remedy)>;

/// A rule that looks at what the values of a model mean, and the function that looks.
struct MeaningRule {
    FindingRule rule;
    void (*look)(const MeantModel& meant, const ReportMeaning& report);
    bool needs_flows = false; ///< left out, with a remark, where flows_are_elsewhere()
    bool sees_gaps = false;   ///< holds also in a row of which another value could not be read, and is taken for 0
};

} // namespace velm
