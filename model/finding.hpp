#pragma once

#include "model/address.hpp"
#include "model/words.hpp"

#include <cstdint>
#include <string>
#include <string_view>

namespace velm {

/// How bad a finding is, from the least to the worst.
enum class Level {
    note,    ///< the engine reads what is meant; good to know
    warning, ///< hardly what the modeller means
    error,   ///< a value is lost, wrong or contradicts another
};

/// "note", "warning" or "error".
[[nodiscard]] constexpr std::string_view name_of(Level level)
{
    return level == Level::note ? "note" : level == Level::warning ? "warning" : "error";
}

/// What can be found. The code is for people and never changes; docs/findings.md has a section for each.
struct FindingRule {
    std::string_view code; ///< such as "V101"
    std::string_view name; ///< such as "field overflow"
    Level level{};
    std::string_view remedy; ///< what to do about it, where a finding does not know better
};

/// Where a field begins in an input file. Lines end at a line feed and count from 1, as do columns, which are bytes.
struct Place {
    std::uint64_t line = 0;
    std::uint64_t column = 0;

    bool operator==(const Place&) const = default;
};

/// One thing found in an input file, a model database or the model that one of them holds. What does not apply is
/// empty. The views are of texts that last as long as the process, as is the rule.
struct Finding {
    const FindingRule* rule = nullptr;
    Address address{};          ///< the datum, its row or its table
    Place place{};              ///< in the input file
    std::string_view section{}; ///< of the input file, in words
    std::string_view field{};   ///< of the input file: the record or the count, where no datum is meant
    std::string message{};      ///< what is wrong, with the value
    std::string value{};        ///< as the model or its database has it
    std::string text{};         ///< as the input file has it, printable UTF-8
    std::string remedy{};       ///< what to do about this case; empty: what the rule says

    [[nodiscard]] std::string_view what_to_do() const { return remedy.empty() ? rule->remedy : remedy; }
};

/// What of an input file's section is meant: "segment 3, volume" or "Number of Segments". May be empty.
[[nodiscard]] inline std::string field_in_words(const Finding& finding)
{
    const std::string row = row_in_words(finding.address);
    const std::string_view column = finding.address.column.empty() ? finding.field : finding.address.column;
    return row + (row.empty() || column.empty() ? "" : ", ") + name_in_words(column);
}

/// Where a finding is, in words: "segments, segment 3, volume" of an input file, "table segment, segment 3, column
/// volume" of a database. May be empty.
[[nodiscard]] inline std::string place_in_words(const Finding& finding)
{
    const bool in_file = !finding.section.empty();
    const std::string place = in_file                         ? std::string(finding.section)
                              : finding.address.table.empty() ? ""
                                                              : "table " + std::string(finding.address.table);
    const std::string part = in_file ? field_in_words(finding) : in_words(finding.address);
    return place + (place.empty() || part.empty() ? "" : ", ") + part;
}

/// "table segment, segment 3, column volume: 'x' is not a number; store a number"
[[nodiscard]] inline std::string in_words(const Finding& finding)
{
    const std::string place = place_in_words(finding);
    return (place.empty() ? "" : place + ": ") + finding.message + "; " + std::string(finding.what_to_do());
}

} // namespace velm
