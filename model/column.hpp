#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

namespace velm {

/// What values a datum may have. The numbers of segments and what is unique are required of every model; the ranges
/// are what to expect.
enum class Rule : std::uint8_t {
    any,
    not_negative,
    fraction,           ///< from 0 to 1
    unique,             ///< in its table
    segment,            ///< the number of a segment
    segment_or_outside, ///< or 0 for the world outside
    segment_below,      ///< or 0 for none
};

/// The value of a host's request that is a datum.
struct HostAnswer {
    constexpr HostAnswer(const char* host_key, std::size_t position = 0)
        : key(host_key), value(position) {} // NOLINT(*-explicit-*)
    std::string_view key;
    std::size_t value; ///< which of the values that the host fills, from 0
};

/// What is said of a datum beside the member that holds it.
struct ColumnText {
    std::string_view name; ///< of the column in a model database
    HostAnswer host;
    std::string_view unit;    ///< the customary one; empty for none
    std::string_view meaning; ///< empty where name and unit say it
    Rule rule = Rule::any;
    std::string_view default_value = "0"; ///< as SQL writes it; empty where the datum has to be given
    std::size_t length = 0;               ///< most characters of a text
};

/// A datum of an item. The member is a function that leads to it, by the kind of the datum.
template <class Item>
struct Column : ColumnText {
    using Member = std::variant<std::int32_t& (*)(Item&), float& (*)(Item&), bool& (*)(Item&), std::string& (*)(Item&)>;
    Member member;

    [[nodiscard]] constexpr Column with_default(std::string_view sql) const
    {
        Column changed = *this;
        changed.default_value = sql;
        return changed;
    }
    /// Has to be given.
    [[nodiscard]] constexpr Column without_default() const { return with_default({}); }
};

/// Follows one member after another, and indices into arrays: follow<&System::loads, &SegmentSeriesSet::scale_factor>
template <auto first, auto... others>
constexpr auto& follow(auto& item)
{
    if constexpr (sizeof...(others) != 0) {
        return follow<others...>(follow<first>(item));
    } else if constexpr (std::is_integral_v<decltype(first)>) {
        return item[first];
    } else {
        return item.*first;
    }
}

template <class Owner, class Value>
Owner owner_of(Value Owner::*);

/// The column of the datum that the members lead to.
template <auto first, auto... others>
constexpr auto column(std::string_view name, HostAnswer host, std::string_view unit = {}, std::string_view meaning = {},
                      Rule rule = Rule::any)
{
    using Item = decltype(owner_of(first));
    using Value = std::remove_reference_t<decltype(follow<first, others...>(std::declval<Item&>()))>;
    Value& (*const member)(Item&) = [](Item& item) -> Value& { return follow<first, others...>(item); };
    const bool must_be_given = rule == Rule::unique || rule == Rule::segment || rule == Rule::segment_or_outside;
    return Column<Item>{{name, host, unit, meaning, rule, must_be_given ? "" : "0"}, member};
}

/// The column of a factor, which is 1 until it is given.
template <auto first, auto... others>
constexpr auto factor_column(std::string_view name, HostAnswer host, std::string_view meaning)
{
    return column<first, others...>(name, host, {}, meaning).with_default("1");
}

/// The column of a text of at most `length` characters.
template <auto member>
constexpr auto text_column(std::string_view name, HostAnswer host, std::size_t length, std::string_view meaning = {})
{
    auto made = column<member>(name, host, {}, meaning).with_default("''");
    made.length = length;
    return made;
}

/// Calls use(value) with the item's value in that column.
template <class Item, class Use>
void with_value(const Column<Item>& column, Item& item, Use&& use)
{
    std::visit([&](auto member) { use(member(item)); }, column.member);
}
template <class Item, class Use>
void with_value(const Column<Item>& column, const Item& item, Use&& use)
{
    // members only lead to values
    with_value(column, const_cast<Item&>(item), // NOLINT(cppcoreguidelines-pro-type-const-cast)
               [&](auto& value) { use(std::as_const(value)); });
}

/// The kind of item that a table holds, by its columns beside the key.
template <class ItemType, std::size_t count>
struct Table {
    using Item = ItemType;
    std::string_view name;
    std::string_view count_key; ///< with which the host is asked how many there are; empty where it is not asked
    std::array<Column<Item>, count> columns;
};
template <class Item, std::size_t count>
Table(const char*, const char*, std::array<Column<Item>, count>) -> Table<Item, count>;

} // namespace velm
