#include "model_check/check_values.hpp"

#include "model_check/rules.hpp"

#include <algorithm>
#include <utility>

namespace velm {

namespace {

/// A field without a value reads as 0, of which its row or its series may seem to be out of meaning.
bool is_near_a_gap(const Address& address, const std::vector<Address>& gaps)
{
    return std::any_of(gaps.begin(), gaps.end(), [&](const Address& gap) {
        return gap.table == address.table && gap.numbers[0] == address.numbers[0] &&
               gap.numbers[1] == address.numbers[1];
    });
}

bool leads_water(const Address& address)
{
    return address.table.starts_with("flow_") || address.column == "flow_option" || address.table == "boundary" ||
           (address.table == "exchange_pair" && address.column.ends_with("_segment"));
}

/// Why nothing can be said of the model's water; empty where something can.
std::string reason_without_water(const Model& model, const std::vector<Address>& gaps)
{
    if (flows_are_elsewhere(model)) {
        return "segment 1 has flow option 3, so the flows come from another file";
    }
    return std::ranges::any_of(gaps, leads_water) ? "where the water flows cannot all be read" : "";
}

} // namespace

std::vector<std::string> check_values(const Model& model, const std::vector<Address>& gaps,
                                      const std::function<void(Finding finding)>& report)
{
    const WaterBalance water(model);
    const RunDates dates(model);
    const MeantModel meant{model, water, dates};
    const std::string no_water = reason_without_water(model, gaps);
    std::string left_out;
    for (const MeaningRule& meaning : meaning_rules()) {
        if (meaning.needs_flows && !no_water.empty()) {
            left_out += (left_out.empty() ? "" : ", ") + std::string(meaning.rule.code);
            continue;
        }
        meaning.look(meant, [&](const Address& address, std::string message, std::string remedy) {
            if (!is_near_a_gap(address, gaps)) {
                report({.rule = &meaning.rule,
                        .address = address,
                        .message = std::move(message),
                        .remedy = std::move(remedy)});
            }
        });
    }
    return left_out.empty() ? std::vector<std::string>() : std::vector{no_water + ": " + left_out + " are left out"};
}

} // namespace velm
