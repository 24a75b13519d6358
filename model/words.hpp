#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace velm {

/// "no boundaries", "1 boundary", "2 boundaries", "3 series": how many there are of what has this name.
[[nodiscard]] inline std::string counted(std::size_t count, std::string_view name)
{
    std::string words = (count == 0 ? "no" : std::to_string(count)) + ' ';
    words += name;
    if (count != 1 && name.ends_with('y')) {
        words.replace(words.size() - 1, 1, "ies");
    } else if (count != 1 && !name.ends_with('s')) {
        words += 's';
    }
    return words;
}

/// A column's or a table's name as people read it: "minimum depth" of "minimum_depth".
[[nodiscard]] inline std::string name_in_words(std::string_view name)
{
    std::string words(name);
    std::ranges::replace(words, '_', ' ');
    return words;
}

/// Without the blanks at its end, and behind that without those at its beginning: what stands in a field.
[[nodiscard]] inline std::string_view without_end_blanks(std::string_view text)
{
    return text.substr(0, text.find_last_not_of(' ') + 1);
}
[[nodiscard]] inline std::string_view without_blanks(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    return without_end_blanks(text);
}

} // namespace velm
