#pragma once

#include "compile_time/fixed_string.hpp"
#include "record_output/field_rendering.hpp"
#include "record_output/layout.hpp"
#include "record_output/output_channel.hpp"
#include "record_output/real_rendering.hpp"

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

namespace velm {

/// A record's values: std::int32_t, float, and texts of fixed length, std::array<char, N>. Nothing converts.
template <class>
inline constexpr bool is_text = false;
template <std::size_t N>
inline constexpr bool is_text<std::array<char, N>> = true;

/// A text that stands where it is written, as a record's value.
template <FixedString text>
inline constexpr auto literal = [] {
    std::array<char, text.size()> characters{};
    for (std::size_t i = 0; i < characters.size(); ++i) {
        characters[i] = text.characters[i];
    }
    return characters;
}();

/// Shown by the compiler when a layout has a mistake: which one, in which layout, at which offset.
template <FixedString layout, LayoutMistake mistake, std::size_t offset>
struct LayoutIs {
    static_assert(mistake == LayoutMistake::none, "this layout has a mistake: see the layout, its kind and its offset");
    static constexpr bool sound = true;
};

/// Shown by the compiler when a value is not of its descriptor's kind: the value's type, its number from 1,
/// the layout and the descriptor's offset.
template <FixedString layout, std::size_t offset, std::size_t value_number, ItemKind kind, class Value>
struct ValueFits {
    static_assert(kind != ItemKind::integer || std::same_as<Value, std::int32_t>, "this descriptor takes an integer");
    static_assert(kind != ItemKind::real || std::same_as<Value, float>, "this descriptor takes a real");
    static_assert(kind != ItemKind::text || is_text<Value>, "this descriptor takes a text");
    static constexpr bool sound = true;
};

/// Shown by the compiler when a layout has more or fewer descriptors than the record has values.
template <FixedString layout, std::size_t descriptors, std::size_t values>
struct ValueCountFits {
    static_assert(descriptors == values, "the layout takes another number of values");
    static constexpr bool sound = descriptors == values;
};

namespace detail {

template <FixedString text>
inline constexpr Layout layout_of = read_layout(text.view());

/// A layout's line with everything in place that does not depend on values, its terminator included.
template <FixedString text>
inline constexpr auto blank_line_of = [] {
    constexpr const Layout& layout = layout_of<text>;
    std::array<char, layout.width + 2> line{};
    line.fill(' ');
    for (std::size_t i = 0; i < layout.item_count; ++i) {
        const LayoutItem& item = layout.items[i];
        for (std::size_t at = 0; item.kind == ItemKind::literal && at < item.width; ++at) {
            line[item.column + at] = text.characters[item.offset + at];
        }
    }
    line[layout.width] = '\r';
    line[layout.width + 1] = '\n';
    return line;
}();

template <FixedString text, std::size_t number, class Value>
inline void render_field(char* line, const Value& value)
{
    constexpr LayoutItem item = layout_of<text>.descriptor(number);
    static_assert(ValueFits<text, item.offset, number + 1, item.kind, Value>::sound);
    if constexpr (item.kind == ItemKind::integer) {
        render_integer_field<item.width>(line + item.column, value);
    } else if constexpr (item.kind == ItemKind::real) {
        render_real_field<item.width, item.decimals>(line + item.column, value);
    } else {
        render_text_field<item.width>(line + item.column, value);
    }
}

template <std::size_t N>
char* render_free_value(char* to, const std::array<char, N>& text, bool& after_text)
{
    if (!after_text) {
        *to++ = ' ';
    }
    after_text = true;
    std::memcpy(to, text.data(), N);
    return to + N;
}

/// The first of a number's two separating blanks; a minus sign takes the place of the second.
template <std::same_as<std::int32_t> Integer>
char* render_free_value(char* to, Integer value, bool& after_text)
{
    after_text = false;
    to[0] = ' ';
    to[1] = ' ';
    return render_integer(to + (value < 0 ? 1 : 2), value);
}

template <std::same_as<float> Real>
char* render_free_value(char* to, Real value, bool& after_text)
{
    after_text = false;
    to[0] = ' ';
    to[1] = shows_minus(value) ? '-' : ' ';
    return render_free_magnitude(to + 2, value);
}

template <class Value>
inline constexpr std::size_t free_room = 2 + (std::same_as<Value, float> ? free_real_room : integer_room);
template <std::size_t N>
inline constexpr std::size_t free_room<std::array<char, N>> = 1 + N;

} // namespace detail

/// Appends one record: the layout's line with `values` in its descriptors, ended by CR LF. The compiler reads
/// the layout and checks kinds and number of the values. Throws ExportFailure when the file cannot be written.
///
///     write_record<"(I5,15x,'Number of Segments')">(out, segments);
template <FixedString layout, class... Values>
void write_record(OutputChannel& out, const Values&... values)
{
    constexpr const Layout& parsed = detail::layout_of<layout>;
    static_assert(LayoutIs<layout, parsed.mistake, parsed.mistake_offset>::sound);
    static_assert(ValueCountFits<layout, parsed.value_count, sizeof...(Values)>::sound);
    if constexpr (parsed.mistake == LayoutMistake::none && parsed.value_count == sizeof...(Values)) {
        constexpr const auto& blank_line = detail::blank_line_of<layout>;
        char* line = out.room_for(blank_line.size());
        std::memcpy(line, blank_line.data(), blank_line.size());
        [&]<std::size_t... number>(std::index_sequence<number...>)
        {
            (detail::render_field<layout, number>(line, values), ...);
        }
        (std::index_sequence_for<Values...>{});
        out.append_up_to(line + blank_line.size());
    }
}

/// Appends one record without a layout, ended by CR LF: each value in its shortest form behind its separator, one
/// blank before a text (none when it follows a text), two before a number, of which a minus sign takes the
/// second. Throws ExportFailure when the file cannot be written.
///
///     write_free_record(out, literal<"    Flow Field ">, flow_field);
template <class... Values>
void write_free_record(OutputChannel& out, const Values&... values)
{
    constexpr std::size_t room = (detail::free_room<Values> + ...) + 2;
    char* end = out.room_for(room);
    bool after_text = false;
    ((end = detail::render_free_value(end, values, after_text)), ...);
    *end++ = '\r';
    *end++ = '\n';
    out.append_up_to(end);
}

} // namespace velm
