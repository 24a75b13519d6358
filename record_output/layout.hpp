#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace velm {

/// What stands at one place of a record's line.
enum class ItemKind : unsigned char { integer, real, text, blanks, literal };

/// One item of a layout, its repeats already written out.
struct LayoutItem {
    ItemKind kind{};
    std::size_t column = 0;   ///< of its first character in the line, from 0
    std::size_t width = 0;    ///< characters in the line
    std::size_t decimals = 0; ///< of a real
    std::size_t offset = 0;   ///< where it stands in the layout, from 0; for a literal its first character
};

enum class LayoutMistake : unsigned char {
    none,
    no_opening_parenthesis,
    no_closing_parenthesis,
    text_after_closing_parenthesis,
    item_expected,
    comma_or_closing_parenthesis_expected,
    unknown_descriptor,
    width_expected,
    width_of_zero,
    point_and_decimals_expected,
    count_before_x_expected,
    count_of_zero,
    count_before_literal,
    literal_without_end,
    number_too_large,
    too_many_items,
};

/// A layout string as the compiler has read it: the line's items from left to right, or the first mistake
/// and its offset in the layout.
///
///     (I5,15x,'Number of Segments')
///
/// is an integer of 5 columns, 15 blanks and a literal of 18 characters. Items: Iw, Fw.d and Aw, each with
/// an optional repeat count (6I5); groups with a repeat count (16(F15.5)), also within one another; nX; 'text'. Letters
/// in either case; blanks outside literals mean nothing.
struct Layout {
    static constexpr std::size_t most_items = 64;

    std::array<LayoutItem, most_items> items{};
    std::size_t item_count = 0;
    std::size_t width = 0;       ///< of the line, without its terminator
    std::size_t value_count = 0; ///< data descriptors, each takes one value
    LayoutMistake mistake = LayoutMistake::none;
    std::size_t mistake_offset = 0;

    /// The item that takes value number `value`, from 0.
    [[nodiscard]] constexpr const LayoutItem& descriptor(std::size_t value) const
    {
        std::size_t i = 0;
        for (std::size_t seen = 0;; ++i) {
            const ItemKind kind = items[i].kind;
            const bool takes_a_value = kind != ItemKind::blanks && kind != ItemKind::literal;
            if (takes_a_value && seen++ == value) {
                return items[i];
            }
        }
    }
};

/// Reads a layout, as the compiler does for every record. A mistake ends the reading and is kept in the Layout.
class LayoutReader {
public:
    constexpr explicit LayoutReader(std::string_view layout) : text_(layout) {}

    constexpr Layout read()
    {
        if (!take('(')) {
            return fail(LayoutMistake::no_opening_parenthesis);
        }
        read_list();
        if (sound() && peek() != '\0') {
            return fail(LayoutMistake::text_after_closing_parenthesis);
        }
        return layout_;
    }

private:
    [[nodiscard]] constexpr bool sound() const { return layout_.mistake == LayoutMistake::none; }

    constexpr Layout fail(LayoutMistake mistake)
    {
        if (sound()) {
            layout_.mistake = mistake;
            layout_.mistake_offset = at_;
        }
        return layout_;
    }

    /// The character at the reading position; NUL at the end.
    [[nodiscard]] constexpr char here() const { return at_ < text_.size() ? text_[at_] : '\0'; }

    /// The next character that is not a blank, a letter in upper case; NUL at the end.
    constexpr char peek()
    {
        while (here() == ' ') {
            ++at_;
        }
        const char c = here();
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }

    constexpr bool take(char expected)
    {
        if (peek() != expected) {
            return false;
        }
        ++at_;
        return true;
    }

    [[nodiscard]] constexpr bool at_digit() { return peek() >= '0' && peek() <= '9'; }

    constexpr std::size_t read_number()
    {
        std::size_t number = 0;
        while (at_digit()) {
            number = number * 10 + static_cast<std::size_t>(peek() - '0');
            if (number > 9999) {
                fail(LayoutMistake::number_too_large);
                return number;
            }
            ++at_;
        }
        return number;
    }

    /// Items up to and including the closing parenthesis.
    constexpr void read_list()
    {
        do {
            read_item();
        } while (sound() && take(','));
        if (sound() && !take(')')) {
            fail(peek() == '\0' ? LayoutMistake::no_closing_parenthesis
                                : LayoutMistake::comma_or_closing_parenthesis_expected);
        }
    }

    constexpr void read_item()
    {
        const bool counted = at_digit();
        const std::size_t count_offset = at_;
        const std::size_t count = counted ? read_number() : 1;
        if (!sound()) {
            return;
        }
        if (count == 0) {
            at_ = count_offset;
            fail(LayoutMistake::count_of_zero);
        } else if (peek() == '\'') {
            counted ? void(fail(LayoutMistake::count_before_literal)) : read_literal();
        } else if (peek() == 'X') {
            if (!counted) {
                fail(LayoutMistake::count_before_x_expected);
                return;
            }
            ++at_;
            append({ItemKind::blanks, 0, count, 0, count_offset});
        } else if (peek() == '(') {
            read_group(count);
        } else {
            read_descriptor(count);
        }
    }

    constexpr void read_group(std::size_t count)
    {
        const std::size_t start = ++at_;
        for (std::size_t i = 0; i < count && sound(); ++i) {
            at_ = start;
            read_list();
        }
    }

    constexpr void read_descriptor(std::size_t count)
    {
        LayoutItem item{ItemKind::integer, 0, 0, 0, at_};
        if (take('F')) {
            item.kind = ItemKind::real;
        } else if (take('A')) {
            item.kind = ItemKind::text;
        } else if (!take('I')) {
            const bool nothing = peek() == ',' || peek() == ')' || peek() == '\0';
            fail(nothing ? LayoutMistake::item_expected : LayoutMistake::unknown_descriptor);
            return;
        }
        read_width(item);
        for (std::size_t i = 0; i < count && sound(); ++i) {
            ++layout_.value_count;
            append(item);
        }
    }

    constexpr void read_width(LayoutItem& item)
    {
        if (!at_digit()) {
            fail(LayoutMistake::width_expected);
            return;
        }
        const std::size_t width_offset = at_;
        item.width = read_number();
        if (item.width == 0) {
            at_ = width_offset;
            fail(LayoutMistake::width_of_zero);
        }
        if (item.kind != ItemKind::real || !sound()) {
            return;
        }
        if (!take('.') || !at_digit()) {
            fail(LayoutMistake::point_and_decimals_expected);
            return;
        }
        item.decimals = read_number();
    }

    constexpr void read_literal()
    {
        const std::size_t opening = at_++;
        std::size_t start = at_;
        while (true) {
            if (at_ >= text_.size()) {
                at_ = opening;
                fail(LayoutMistake::literal_without_end);
                return;
            }
            if (text_[at_++] != '\'') {
                continue;
            }
            if (here() != '\'') {
                append({ItemKind::literal, 0, at_ - 1 - start, 0, start});
                return;
            }
            append({ItemKind::literal, 0, at_ - start, 0, start}); // two apostrophes stand for one
            start = ++at_;
        }
    }

    constexpr void append(LayoutItem item)
    {
        if (layout_.item_count == Layout::most_items) {
            fail(LayoutMistake::too_many_items);
            return;
        }
        item.column = layout_.width;
        layout_.width += item.width;
        layout_.items[layout_.item_count++] = item;
    }

    std::string_view text_;
    std::size_t at_ = 0;
    Layout layout_;
};

/// The layout that `text` describes; a mistake is in it, not thrown.
constexpr Layout read_layout(std::string_view text)
{
    return LayoutReader(text).read();
}

} // namespace velm
