#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace velm {

/// A character of a text in UTF-8.
struct Character {
    char32_t code = 0;
    std::size_t bytes = 0; ///< 0 when the text goes on with no valid character
};

/// The first character of a text that is not empty. Overlong forms, surrogates and codes above 10FFFF are invalid.
[[nodiscard]] Character first_character(std::string_view utf8);
[[nodiscard]] bool is_utf8(std::string_view text);

/// True for what steers a terminal or shows a line in another order than it has: control characters, bidirectional
/// marks, line and paragraph separators.
[[nodiscard]] bool is_steering(char32_t code);

/// A text of somebody else's for a message, on one line: steering characters become escapes such as \x0A, \x1B and
/// \u202E, and bytes that are no UTF-8 become \xNN. A text longer than `most` bytes is cut and ends in "...".
[[nodiscard]] std::string printable(std::string_view utf8, std::size_t most = std::string_view::npos);
/// The same for a whole message of ours, whose line feeds stay.
[[nodiscard]] std::string printable_lines(std::string_view message);
/// Bytes of ISO 8859-1 as printable UTF-8.
[[nodiscard]] std::string printable_latin1(std::string_view bytes, std::size_t most = std::string_view::npos);
/// Appends the character of ISO 8859-1 to a text in UTF-8.
void append_latin1(std::string& utf8, char byte);
/// A file's name, printable.
[[nodiscard]] std::string shown(const std::filesystem::path& file);

/// The digits of `code`, at least `digits` of them.
[[nodiscard]] std::string hexadecimal(char32_t code, std::size_t digits);

/// How much of a value a message quotes.
inline constexpr std::size_t longest_quote = 80;

} // namespace velm
