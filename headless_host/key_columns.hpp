#pragma once

#include "host_link/host_keys.hpp"
#include "model/items.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>

namespace velm {

/// The columns of a model's table that a key of the host asks for; none for a count, a series and what is no datum.
struct KeyColumns {
    TableId table{};
    std::uint8_t first = 0; ///< the first of them in its table
    std::uint8_t count = 0;
    std::uint8_t first_value = 0; ///< of the request that is answered with a datum

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

/// By the position of the key. Does not compile when a column names no key, or values of another kind or length.
consteval std::array<KeyColumns, host_key_count> columns_of_keys()
{
    std::array<KeyColumns, host_key_count> keys{};
    for_each_table([&](TableId id, const auto& table) {
        for (std::size_t place = 0; place < table.columns.size(); ++place) {
            const auto& column = table.columns[place];
            const std::size_t position = host_key_position(column.host.key);
            if (position == host_key_count) {
                throw std::logic_error("a column names no key of the host");
            }
            const HostKey& key = host_keys[position];
            KeyColumns& columns = keys[position];
            if (columns.count == 0) {
                columns = {id, static_cast<std::uint8_t>(place), 0, 0};
                while (key.arguments[columns.first_value].direction == Direction::in) {
                    ++columns.first_value;
                }
            }
            const Argument& value = key.arguments[columns.value_of(column)];
            if (columns.table != id || columns.first + columns.count != place || column.host.value != columns.count ||
                value.direction != Direction::out || value.kind != kind_of(column) ||
                static_cast<std::size_t>(value.text_length) != column.length) {
                throw std::logic_error("a column is not as its key has it");
            }
            ++columns.count;
        }
    });
    return keys;
}

inline constexpr std::array key_columns = columns_of_keys();

} // namespace velm
