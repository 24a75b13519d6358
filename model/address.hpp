#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace velm {

/// The numbers that tell a row of a table from the others, in the order of its key.
using RowNumbers = std::array<std::int64_t, 3>;

/// Where a datum stands, in a model as in a model database: table, the row's numbers, column. Of texts that last as
/// long as the process, for it keeps views.
///
///     {"boundary_value", "time", {1, 2, 17}} is the time of system 1, boundary 2, pair 17
struct Address {
    std::string_view table{};  ///< empty: nothing in particular
    std::string_view column{}; ///< empty: the row as a whole
    RowNumbers numbers{};      ///< 0 where the key is shorter, or where all rows are meant that begin so

    bool operator==(const Address&) const = default;
};

/// What the numbers of a table's rows count, in words, "" behind the last: {"system", "boundary", "pair"}.
struct TableKey {
    std::string_view table;
    std::array<std::string_view, 3> words;
};

/// Those of all tables but that of the run, which has one row; each stands behind those that its rows refer to.
inline constexpr std::array<TableKey, 24> table_keys{{
    {"segment", {"segment"}},
    {"system", {"system"}},
    {"segment_place", {"segment"}},
    {"initial_condition", {"system", "segment"}},
    {"boundary", {"system", "boundary"}},
    {"boundary_value", {"system", "boundary", "pair"}},
    {"load", {"system", "load"}},
    {"load_value", {"system", "load", "pair"}},
    {"flow_field", {"flow field"}},
    {"flow_function", {"flow field", "flow function"}},
    {"flow_path", {"flow field", "flow function", "flow path"}},
    {"flow_value", {"flow field", "flow function", "pair"}},
    {"exchange_field", {"exchange field"}},
    {"exchange_function", {"exchange field", "exchange function"}},
    {"exchange_pair", {"exchange field", "exchange function", "exchange pair"}},
    {"exchange_value", {"exchange field", "exchange function", "pair"}},
    {"time_function_type", {"time function type"}},
    {"time_function", {"time function type", "time function"}},
    {"time_function_value", {"time function type", "time function", "pair"}},
    {"parameter_type", {"parameter type"}},
    {"parameter", {"parameter type", "parameter"}},
    {"parameter_value", {"parameter type", "parameter", "segment"}},
    {"constant_type", {"constant type"}},
    {"constant", {"constant type", "constant"}},
}};

/// None for the run.
[[nodiscard]] constexpr std::array<std::string_view, 3> words_of_key(std::string_view table)
{
    for (const TableKey& key : table_keys) {
        if (key.table == table) {
            return key.words;
        }
    }
    return {};
}

/// "system 2, boundary 1, pair 40"; empty for the run and where no row is meant.
[[nodiscard]] inline std::string row_in_words(const Address& address)
{
    const auto words = words_of_key(address.table);
    std::string row;
    for (std::size_t key = 0; key < words.size() && !words.at(key).empty() && address.numbers.at(key) != 0; ++key) {
        row.append(row.empty() ? "" : ", ").append(words.at(key)).append(" ");
        row += std::to_string(address.numbers.at(key));
    }
    return row;
}

/// "system 2, boundary 1, pair 40, column value"
[[nodiscard]] inline std::string in_words(const Address& address)
{
    std::string words = row_in_words(address);
    if (!address.column.empty()) {
        words.append(words.empty() ? "column " : ", column ").append(address.column);
    }
    return words;
}

} // namespace velm
