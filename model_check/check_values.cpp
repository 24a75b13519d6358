#include "model_check/check_values.hpp"

#include "model_check/rules.hpp"

#include <utility>

namespace velm {

void check_values(const Model& model, const std::function<void(Finding finding)>& report)
{
    const WaterBalance water(model);
    const RunDates dates(model);
    const MeantModel meant{model, water, dates};
    const bool flows_are_known = !flows_are_elsewhere(model);
    for (const MeaningRule& meaning : meaning_rules()) {
        if (flows_are_known || !meaning.needs_flows) {
            meaning.look(meant, [&](const Address& address, std::string message, std::string remedy) {
                report({.rule = &meaning.rule,
                        .address = address,
                        .message = std::move(message),
                        .remedy = std::move(remedy)});
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
