#pragma once

#include "model/finding.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velm {

/// As the limit of a list: it has none.
constexpr std::size_t all_findings = std::numeric_limits<std::size_t>::max();

/// How often a rule was met.
struct RuleCount {
    const FindingRule* rule = nullptr;
    std::uint64_t found = 0;
    std::uint64_t listed = 0;
};

/// What was found in one file.
struct FileFindings {
    std::string file;
    bool database = false;
    std::map<std::string_view, RuleCount> counts; ///< by code, of what was found
    std::vector<Finding> findings;                ///< those that are listed, unless somebody heard them as they came
    std::vector<std::string> remarks;             ///< what was left out, a sentence each

    [[nodiscard]] std::uint64_t count(Level level) const;
};

/// Hears of each finding that is listed, as it comes.
using OnFinding = std::function<void(const Finding& finding)>;

/// Counts findings but those of ignored codes, and lists of each rule as many as the limit allows: in the file's
/// findings, or to `on_finding`.
class FindingList {
public:
    FindingList(FileFindings& findings, std::size_t most_of_a_rule, OnFinding on_finding = {},
                std::set<std::string, std::less<>> ignored = {})
        : to_(findings), most_(most_of_a_rule), on_finding_(std::move(on_finding)), ignored_(std::move(ignored))
    {
    }

    void add(Finding finding);
    /// Takes over what another list, of the same limit, was made for.
    void add_all(FileFindings&& found);
    /// Counts without listing.
    void count(const FindingRule& rule, std::uint64_t number);
    [[nodiscard]] std::size_t most() const { return most_; }

private:
    FileFindings& to_;
    std::size_t most_;
    OnFinding on_finding_;
    std::set<std::string, std::less<>> ignored_; ///< codes
};

} // namespace velm
