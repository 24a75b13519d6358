#include "model_check/file_findings.hpp"

namespace velm {

std::uint64_t FileFindings::count(Level level) const
{
    std::uint64_t sum = 0;
    for (const auto& [code, count] : counts) {
        sum += count.rule->level == level ? count.found : 0;
    }
    return sum;
}

void FindingList::count(const FindingRule& rule, std::uint64_t number)
{
    if (number > 0 && !ignored_.contains(rule.code)) {
        RuleCount& count = to_.counts[rule.code];
        count.rule = &rule;
        count.found += number;
    }
}

void FindingList::add_all(FileFindings&& found)
{
    for (Finding& finding : found.findings) {
        add(std::move(finding));
    }
    for (const auto& [code, of_code] : found.counts) {
        count(*of_code.rule, of_code.found - of_code.listed);
    }
}

void FindingList::add(Finding finding)
{
    count(*finding.rule, 1);
    const auto already = to_.counts.find(finding.rule->code);
    if (already == to_.counts.end() || already->second.listed == most_) {
        return;
    }
    ++already->second.listed;
    if (on_finding_) {
        on_finding_(finding);
    } else {
        to_.findings.push_back(std::move(finding));
    }
}

} // namespace velm
