#pragma once

#include "input_file/records/record.hpp"

#include <cstddef>
#include <string_view>

namespace velm {

/// Blanks, at most as many as a record has between two parts.
[[nodiscard]] std::string_view blanks(std::size_t count);

/// Whether a word may be meant as a number, INF and NaN included.
[[nodiscard]] inline bool begins_like_a_number(std::string_view word)
{
    if (!word.empty() && (word.front() == '-' || word.front() == '+')) {
        word.remove_prefix(1);
    }
    return !word.empty() &&
           ((word.front() >= '0' && word.front() <= '9') || word.front() == '.' || word == "INF" || word == "NaN");
}

/// Whether the line has the record's width, its labels and blanks, and something like a number in each numeric field.
[[nodiscard]] bool has_columns_of(const Record& record, std::string_view line);

/// Whether the line is a labelled record other than the one that belongs there.
[[nodiscard]] bool is_another_record(const Record& expected, std::string_view line);

} // namespace velm
