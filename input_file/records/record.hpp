#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <string_view>

namespace velm {

/// What stands in a run of a record's columns.
enum class PartKind {
    label,   ///< always the same text
    integer, ///< right-justified
    real,    ///< right-justified, with a fixed number of decimals
    text,    ///< bytes, NUL and line ends included
};

/// A run of columns, or one number of a row. A field that holds a datum names the table and column of a model database
/// that keep it; counts and numbers that repeat the row's place have no table and a name of their own.
struct Part {
    PartKind kind = PartKind::label;
    std::size_t column = 0; ///< the first, from 1; 0 in a row
    std::size_t width = 0;  ///< 0 in a row
    std::string_view table;
    std::string_view name; ///< of a label its text
    std::size_t decimals = 0;

    [[nodiscard]] constexpr std::size_t end() const { return column + width - 1; }
};

constexpr Part label(std::size_t column, std::string_view text)
{
    return {PartKind::label, column, text.size(), {}, text};
}
constexpr Part integer(std::string_view table, std::string_view name, std::size_t column = 0, std::size_t width = 0)
{
    return {PartKind::integer, column, width, table, name};
}
constexpr Part real(std::string_view table, std::string_view name, std::size_t column = 0, std::size_t width = 0,
                    std::size_t decimals = 0)
{
    return {PartKind::real, column, width, table, name, decimals};
}
constexpr Part text(std::string_view table, std::string_view name, std::size_t column, std::size_t width)
{
    return {PartKind::text, column, width, table, name};
}

/// One kind of line. Columns between its parts are blank, and it ends with its last part. A row has no columns: its
/// numbers follow one another, each after two blanks, of which a minus sign takes the place of the second.
class Record {
public:
    static constexpr std::size_t most_parts = 20;

    constexpr Record(std::string_view name, std::initializer_list<Part> parts) : name_(name)
    {
        for (const Part& part : parts) {
            parts_.at(count_++) = part;
        }
    }

    /// What a reader of messages knows it by: its label where it has one.
    [[nodiscard]] constexpr std::string_view name() const { return name_; }
    [[nodiscard]] constexpr const Part* begin() const { return parts_.data(); }
    [[nodiscard]] constexpr const Part* end() const { return parts_.data() + count_; }
    [[nodiscard]] constexpr std::size_t size() const { return count_; }
    [[nodiscard]] constexpr const Part& operator[](std::size_t number) const { return parts_.at(number); }
    /// The part of that name, which the record has.
    [[nodiscard]] constexpr const Part& part(std::string_view name) const
    {
        return *std::find_if(begin(), end(), [name](const Part& it) { return it.name == name; });
    }
    [[nodiscard]] constexpr bool is_row() const { return width() == 0; }
    /// Without the line end.
    [[nodiscard]] constexpr std::size_t width() const
    {
        const Part& last = parts_.at(count_ - 1);
        return last.column == 0 ? 0 : last.end();
    }

private:
    std::string_view name_;
    std::array<Part, most_parts> parts_{};
    std::size_t count_ = 0;
};

} // namespace velm
