#include "model_check/rules.hpp"

#include "input_file/form_rules.hpp"
#include "model_check/loss_rules.hpp"
#include "model_store/model_store.hpp"

#include <algorithm>

namespace velm {

const std::vector<MeaningRule>& meaning_rules()
{
    static const std::vector<MeaningRule> all = [] {
        std::vector<MeaningRule> rules;
        for (const std::span<const MeaningRule> group :
             {value_rules(), rules_of_water(), rules_of_series(), rules_of_items()}) {
            rules.insert(rules.end(), group.begin(), group.end());
        }
        return rules;
    }();
    return all;
}

std::span<const FindingRule* const> finding_rules()
{
    static const std::vector<const FindingRule*> all = [] {
        std::vector<const FindingRule*> rules(form_rules::all.begin(), form_rules::all.end());
        rules.insert(rules.end(), loss_rules::all.begin(), loss_rules::all.end());
        rules.push_back(&database_row);
        for (const MeaningRule& meaning : meaning_rules()) {
            rules.push_back(&meaning.rule);
        }
        std::ranges::sort(rules, {}, &FindingRule::code);
        return rules;
    }();
    return all;
}

} // namespace velm
