#include "model_check/finding.hpp"

#include <utility>

namespace velm {

namespace {

using enum Level;

constexpr std::array<FindingRule, number_of_finding_kinds> rules{{
    // what stands in the columns of an input file
    {"V101", "field overflow", error,
     "make the value smaller: with another unit and its scale or conversion factor, another number, or a series of "
     "fewer pairs"},
    {"V102", "not a number", error, "write a number into the field's columns"},
    {"V103", "not a finite number", error, "replace it by a number"},
    {"V104", "beyond single precision", error, "use a number that single precision holds: up to 3.4e38, or 32 bits"},
    {"V105", "touching fields", note, "read this record by its columns, never by its blanks"},
    {"V106", "line end", warning, "end each record with CR LF"},
    {"V107", "other label", note, "nothing, when people alone read the label"},
    {"V108", "other form", note, "nothing; an export writes the same value in its own form"},
    {"V109", "record out of place", error, "compare the counts above it with the records that follow them"},
    {"V110", "file ends early", error, "copy or export the file again"},
    {"V111", "trailing bytes", error, "remove what follows the last record, or correct the counts"},
    {"V112", "contradiction", error, "make both places say the same"},
    {"V113", "negative count", warning, "write 0 for none"},
    {"V114", "not storable", warning, "correct it before an import"},
    // what values mean
    {"V201", "missing segment", error, "name a segment of the model, or 0 where none or the world outside is meant"},
    {"V202", "path to itself", warning, "name two different segments"},
    {"V203", "time goes back", error, "put the pairs into the order of their times"},
    {"V204", "time repeats", warning, "keep one pair for each time, or move one a little"},
    {"V205", "fraction outside 0 to 1", warning, "give a part of the whole, from 0 to 1"},
    {"V206", "negative value", warning, "give a value of 0 or more"},
    {"V207", "time steps", warning, "let the minimum be at most the maximum"},
    {"V208", "missing flow field", warning, "name a flow field of the model"},
    {"V209", "bottom segments in a circle", error, "let the segments below each other end in 0"},
    {"V210", "no time pairs", warning, "give the series at least one pair, or remove it"},
    {"V211", "above the maximum", warning, "raise the system's maximum concentration, or lower the value"},
    // what an export loses
    {"V301", "digits lost", note,
     "nothing, when the difference does not matter; else choose a larger unit or a smaller one"},
    {"V302", "value changed", warning, "choose a unit, with the scale or conversion factor, in which more digits show"},
    {"V303", "value vanishes", warning,
     "choose a unit, with the scale or conversion factor, in which the value is larger"},
    {"V304", "text cut", note, "shorten the text, when its end matters in the file"},
    // what a database holds
    {"V401", "database row", error, "correct the row"},
}};

} // namespace

std::string_view name_of(Level level)
{
    switch (level) {
    case note: return "note";
    case warning: return "warning";
    case error: break;
    }
    return "error";
}

std::span<const FindingRule> finding_rules()
{
    return rules;
}

const FindingRule& rule_of(FindingKind kind)
{
    return rules.at(static_cast<std::size_t>(kind));
}

std::uint64_t FileFindings::count(Level level) const
{
    std::uint64_t sum = 0;
    for (std::size_t kind = 0; kind < rules.size(); ++kind) {
        sum += rules[kind].level == level ? found[kind] : 0;
    }
    return sum;
}

void FindingList::add(Finding finding)
{
    std::uint64_t& already = to_.found.at(static_cast<std::size_t>(finding.kind));
    if (already++ < most_) {
        to_.findings.push_back(std::move(finding));
    }
}

} // namespace velm
