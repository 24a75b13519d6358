#pragma once

#include "host_link/host_keys.hpp"
#include "model/items.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>

namespace velm {

/// What a key of the host asks a model for.
enum class Asked : std::uint8_t {
    something_else,
    columns,
    number_of_items,
    number_of_pairs, ///< of a series
    pairs,           ///< one of a series, or all
};

/// The data of a model that a key of the host asks for.
struct KeyColumns {
    Asked asked{};
    TableId table{};              ///< of a series, that of the items that it belongs to
    std::uint8_t first = 0;       ///< the first of the columns in their table
    std::uint8_t count = 0;       ///< of columns
    std::uint8_t first_value = 0; ///< of the request that is answered

    [[nodiscard]] constexpr std::size_t value_of(const ColumnText& column) const
    {
        return first_value + column.host.value;
    }
    /// The place of the number of an item among the request's values: numbers come from the outermost list on, before
    /// the answers or, of one key, behind them.
    [[nodiscard]] constexpr std::size_t number_value(std::size_t level) const
    {
        return level < first_value ? level : level + count;
    }
};

template <class Item>
constexpr Kind kind_of(const Column<Item>& column)
{
    constexpr Kind kinds[] = {Kind::integer, Kind::real, Kind::integer, Kind::text}; // a flag is 0 or 1
    return kinds[column.member.index()];
}

/// By the position of the key. Does not compile when a table or column names no key, or values of another kind or
/// length.
consteval std::array<KeyColumns, host_key_count> columns_of_keys()
{
    std::array<KeyColumns, host_key_count> keys{};
    const auto asks = [&](std::string_view name, Asked asked, TableId table) -> KeyColumns& {
        const std::size_t position = host_key_position(name);
        if (position == host_key_count) {
            throw std::logic_error("a table or a column names no key of the host");
        }
        KeyColumns& key = keys[position];
        if (key.asked == Asked::something_else) {
            key = {asked, table};
            while (host_keys[position].arguments[key.first_value].direction == Direction::in) {
                ++key.first_value;
            }
        }
        return key;
    };
    for_each_table([&](TableId id, const auto& table) {
        if (!table.count_key.empty()) {
            asks(table.count_key, Asked::number_of_items, id);
        }
        for (std::size_t place = 0; place < table.columns.size(); ++place) {
            const auto& column = table.columns[place];
            KeyColumns& columns = asks(column.host.key, Asked::columns, id);
            if (columns.count == 0) {
                columns.first = static_cast<std::uint8_t>(place);
            }
            const Argument& value = host_keys[&columns - keys.data()].arguments[columns.value_of(column)];
            if (columns.table != id || columns.first + columns.count != place || column.host.value != columns.count ||
                value.direction != Direction::out || value.kind != kind_of(column) ||
                static_cast<std::size_t>(value.text_length) != column.length) {
                throw std::logic_error("a column is not as its key has it");
            }
            ++columns.count;
        }
    });
    for (const SeriesTable& series : series_tables) {
        asks(series.count_key, Asked::number_of_pairs, series.owner);
        asks(series.pairs_key, Asked::pairs, series.owner);
    }
    return keys;
}

inline constexpr std::array key_columns = columns_of_keys();

} // namespace velm
