#pragma once

#include <string>
#include <string_view>

namespace velm {

/// ISO 8859-1 as UTF-8; every byte has a character. NUL, line feed and carriage return, which no text in a database
/// may have, become the characters that picture them: U+2400, U+240A and U+240D.
[[nodiscard]] std::string utf8_from_latin1(std::string_view latin1);

/// UTF-8 as ISO 8859-1, the three pictures as what they picture, or what keeps it from being so.
struct Latin1Text {
    std::string text;
    bool valid_utf8 = true;
    std::string foreign_character; ///< the first that ISO 8859-1 lacks, such as "→ (U+2192)"; empty when there is none
};
[[nodiscard]] Latin1Text latin1_from_utf8(std::string_view utf8);

} // namespace velm
