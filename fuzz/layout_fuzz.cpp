// A layout is any text. Whatever it is, its items lie side by side in the line and within the text; and written out
// item by item it describes the same line again.

#include "fuzz/fuzz_bytes.hpp"
#include "record_output/layout.hpp"

#include <string>

using namespace velm;

namespace {

bool takes_a_value(const LayoutItem& item)
{
    return item.kind != ItemKind::blanks && item.kind != ItemKind::literal;
}

/// The layout with every repeat written out, a literal for each piece of one.
std::string written_out(const Layout& layout, std::string_view text)
{
    std::string list;
    for (std::size_t i = 0; i < layout.item_count; ++i) {
        const LayoutItem& item = layout.items[i];
        list += list.empty() ? "(" : ",";
        switch (item.kind) {
        case ItemKind::integer: list += 'I' + std::to_string(item.width); break;
        case ItemKind::real: list += 'F' + std::to_string(item.width) + '.' + std::to_string(item.decimals); break;
        case ItemKind::text: list += 'A' + std::to_string(item.width); break;
        case ItemKind::blanks: list += std::to_string(item.width) + 'X'; break;
        case ItemKind::literal:
            list += '\'';
            for (const char c : text.substr(item.offset, item.width)) {
                list.append(c == '\'' ? 2 : 1, c);
            }
            list += '\'';
        }
    }
    return list + ')';
}

/// The line that the layout describes: literals as they are, a descriptor's columns as its kind and decimals.
std::string line_of(const Layout& layout, std::string_view text)
{
    std::string line;
    for (std::size_t i = 0; i < layout.item_count; ++i) {
        const LayoutItem& item = layout.items[i];
        expect(item.column == line.size(), "an item begins where the one before it ends");
        if (item.kind == ItemKind::literal) {
            expect(item.offset + item.width <= text.size(), "a literal lies within the layout");
            line += text.substr(item.offset, item.width);
        } else {
            expect(item.offset < text.size() && item.width != 0, "an item stands in the layout and has a width");
            line.append(item.width, static_cast<char>(0x80U + static_cast<unsigned>(item.kind) * 0x20 + item.decimals));
        }
    }
    expect(line.size() == layout.width, "the items fill the line");
    return line;
}

void check_sound(const Layout& layout, std::string_view text)
{
    std::size_t values = 0;
    for (std::size_t i = 0; i < layout.item_count; ++i) {
        const LayoutItem& item = layout.items[i];
        if (takes_a_value(item)) {
            expect(&layout.descriptor(values++) == &item, "the n-th descriptor takes the n-th value");
        }
        if (item.kind == ItemKind::real) {
            expect(item.width <= Layout::widest_real && item.decimals < item.width, "a real can be rendered");
        }
    }
    expect(values == layout.value_count, "every descriptor takes a value");

    const std::string again_text = written_out(layout, text);
    const Layout again = read_layout(again_text);
    if (again.mistake == LayoutMistake::too_many_items) {
        return; // a literal's apostrophes end pieces of it, and make more when written out
    }
    expect(again.mistake == LayoutMistake::none, "written out, it is a layout too");
    expect(line_of(again, again_text) == line_of(layout, text), "and describes the same line");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(bytes), size);
    const Layout layout = read_layout(text);
    expect(layout.item_count <= Layout::most_items, "items have room");
    if (layout.mistake == LayoutMistake::none) {
        check_sound(layout, text);
    } else {
        expect(layout.mistake_offset <= size, "a mistake lies within the layout");
    }
    return 0;
}
