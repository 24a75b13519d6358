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

} // namespace

void check_values(const Model& model, const std::vector<Address>& gaps,
                  const std::function<void(Finding finding)>& report)
{
    const WaterBalance water(model);
    const RunDates dates(model);
    const MeantModel meant{model, water, dates};
    const bool flows_are_known = !flows_are_elsewhere(model);
    for (const MeaningRule& meaning : meaning_rules()) {
        if (flows_are_known || !meaning.needs_flows) {
            meaning.look(meant, [&](const Address& address, std::string message, std::string remedy) {
                if (!is_near_a_gap(address, gaps)) {
                    report({.rule = &meaning.rule,
                            .address = address,
                            .message = std::move(message),
                            .remedy = std::move(remedy)});
                }
            });
        }
    }
}

std::vector<std::string> remarks_on(const Model& model)
{
    std::string codes;
    for (const MeaningRule& meaning : meaning_rules()) {
        codes += meaning.needs_flows ? (codes.empty() ? "" : ", ") + std::string(meaning.rule.code) : "";
    }
    if (codes.empty() || !flows_are_elsewhere(model)) {
        return {};
    }
    return {"segment 1 has flow option 3, so the flows come from another file: " + codes + " are left out"};
}

} // namespace velm
