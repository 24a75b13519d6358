#pragma once

#include "model/finding.hpp"

#include <algorithm>
#include <array>

/// What can be wrong with the form of an input file: with what stands in its columns.
namespace velm::form_rules {

using enum Level;

inline constexpr FindingRule field_overflow{
    "V101", "field overflow", error,
    "make the value smaller: with another unit and its scale or conversion factor, another number, or a series of "
    "fewer pairs"};
inline constexpr FindingRule not_a_number{"V102", "not a number", error, "write a number into the field's columns"};
inline constexpr FindingRule not_finite{"V103", "not a finite number", error, "replace it by a number"};
inline constexpr FindingRule beyond_single_precision{
    "V104", "beyond single precision", error, "use a number that single precision holds: up to 3.4e38, or 32 bits"};
inline constexpr FindingRule touching_fields{"V105", "touching fields", note,
                                             "read this record by its columns, never by its blanks"};
inline constexpr FindingRule line_end{"V106", "line end", warning, "end each record with CR LF"};
inline constexpr FindingRule other_label{"V107", "other label", note, "nothing, when people alone read the label"};
inline constexpr FindingRule other_form{"V108", "other form", note,
                                        "nothing; an export writes the same value in its own form"};
inline constexpr FindingRule record_out_of_place{"V109", "record out of place", error,
                                                 "put the expected record here, or correct the counts above it"};
inline constexpr FindingRule file_ends_early{"V110", "file ends early", error, "copy or export the file again"};
inline constexpr FindingRule trailing_bytes{"V111", "trailing bytes", error,
                                            "remove what follows the last record, or correct the counts"};
inline constexpr FindingRule contradiction{"V112", "contradiction", error, "make both places say the same"};
inline constexpr FindingRule negative_count{"V113", "negative count", warning, "write 0 for none"};
inline constexpr FindingRule not_storable{"V114", "not storable", warning, "correct it before an import"};
inline constexpr FindingRule trimmed_blanks{"V115", "trimmed blanks", warning,
                                            "keep the blanks at the end of a line; an export writes them again"};
inline constexpr FindingRule dropped_nul{"V116", "dropped NUL", warning,
                                         "keep the NUL behind a name; an export writes it again"};
inline constexpr FindingRule utf8_mark{"V117", "UTF-8 mark", warning,
                                       "save the file as plain text, without a mark at its start"};
/// Of a value, but the reader finds it; a database with such a number is not read at all.
inline constexpr FindingRule missing_segment{
    "V201", "missing segment", error, "name a segment of the model, or 0 where none or the world outside is meant"};

inline constexpr std::array all{&field_overflow,      &not_a_number,    &not_finite,     &beyond_single_precision,
                                &touching_fields,     &line_end,        &other_label,    &other_form,
                                &record_out_of_place, &file_ends_early, &trailing_bytes, &contradiction,
                                &negative_count,      &not_storable,    &trimmed_blanks, &dropped_nul,
                                &utf8_mark,           &missing_segment};

/// True of the rules whose findings leave all values sure, but an export would write other bytes.
[[nodiscard]] constexpr bool is_about_form(const FindingRule& rule)
{
    constexpr std::array about_form{&line_end, &other_label, &other_form, &trimmed_blanks, &dropped_nul, &utf8_mark};
    return std::ranges::find(about_form, &rule) != about_form.end();
}

} // namespace velm::form_rules
