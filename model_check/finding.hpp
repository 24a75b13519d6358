#pragma once

#include "input_file/input_file.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velm {

/// How bad a finding is, from the least to the worst.
enum class Level {
    note,    ///< the engine reads what is meant; good to know
    warning, ///< hardly what the modeller means
    error,   ///< a value is lost, wrong or contradicts another
};
constexpr std::size_t number_of_levels = 3;

/// "note", "warning" or "error".
[[nodiscard]] std::string_view name_of(Level level);

/// What can be found. The codes of finding_rules() are for people and never change; this is their order.
enum class FindingKind {
    field_overflow,
    not_a_number,
    not_finite,
    beyond_single_precision,
    touching_fields,
    line_end,
    label,
    form,
    record_out_of_place,
    file_ends_early,
    trailing_bytes,
    contradiction,
    negative_count,
    not_storable,
    missing_segment,
    path_to_itself,
    time_goes_back,
    time_repeats,
    fraction,
    negative,
    time_steps,
    missing_flow_field,
    bottom_circle,
    no_time_pairs,
    above_maximum,
    digits_lost,
    value_changed,
    value_vanishes,
    text_cut,
    database_row,
};
constexpr std::size_t number_of_finding_kinds = static_cast<std::size_t>(FindingKind::database_row) + 1;

struct FindingRule {
    std::string_view code; ///< such as "V101"
    std::string_view name; ///< such as "field overflow"
    Level level{};
    std::string_view remedy;
};

/// By FindingKind. docs/findings.md describes each of them.
[[nodiscard]] std::span<const FindingRule> finding_rules();
[[nodiscard]] const FindingRule& rule_of(FindingKind kind);

/// One thing found, in an input file at `place`, in a database at table, row and column. What does not apply is empty.
struct Finding {
    FindingKind kind{};
    std::string message; ///< what is wrong, with the value
    Place place{};
    std::string section{}; ///< in words
    std::string field{};   ///< in words
    std::string table{};
    std::string row{}; ///< the row's key in words
    std::string column{};
    std::string value{}; ///< in the database
    std::string text{};  ///< in the input file, as printable UTF-8
};

/// What was found in one file.
struct FileFindings {
    std::string file;
    bool database = false;
    std::vector<Finding> findings;                              ///< the first of each kind, up to a limit
    std::array<std::uint64_t, number_of_finding_kinds> found{}; ///< of each kind, the unlisted ones included

    [[nodiscard]] std::uint64_t count(Level level) const;
};

/// Collects findings, of each kind as many as the limit allows; all are counted.
class FindingList {
public:
    FindingList(FileFindings& findings, std::size_t most_of_a_kind) : to_(findings), most_(most_of_a_kind) {}

    void add(Finding finding);
    /// Counts without listing.
    void count(FindingKind kind, std::uint64_t number) { to_.found.at(static_cast<std::size_t>(kind)) += number; }

private:
    FileFindings& to_;
    std::size_t most_;
};

} // namespace velm
