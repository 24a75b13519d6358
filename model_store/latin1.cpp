#include "model_store/latin1.hpp"

#include <array>

namespace velm {

namespace {

struct Character {
    char32_t code = 0;
    std::size_t bytes = 0; ///< 0 when the text goes on with no valid character
};

/// The first character of a text that is not empty. Overlong forms, surrogates and codes above 10FFFF are invalid.
Character first_character(std::string_view utf8)
{
    const auto byte = [utf8](std::size_t index) { return static_cast<unsigned char>(utf8[index]); };
    const unsigned lead = byte(0);
    if (lead < 0x80) {
        return {lead, 1};
    }
    const std::size_t bytes = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || bytes > utf8.size()) {
        return {};
    }
    char32_t code = lead & (0x7FU >> bytes);
    for (std::size_t index = 1; index < bytes; ++index) {
        if ((byte(index) & 0xC0U) != 0x80) {
            return {};
        }
        code = code << 6U | (byte(index) & 0x3FU);
    }
    constexpr std::array<char32_t, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    return code < smallest.at(bytes) || surrogate || code > 0x10FFFF ? Character{} : Character{code, bytes};
}

constexpr char32_t pictures = 0x2400; ///< of the control characters

constexpr bool is_pictured(char32_t code)
{
    return code == 0 || code == '\n' || code == '\r';
}

std::string hexadecimal(char32_t code, std::size_t digits)
{
    std::string text;
    for (; code != 0 || text.size() < digits; code >>= 4U) {
        text.insert(text.begin(), "0123456789ABCDEF"[code & 15U]);
    }
    return text;
}

} // namespace

std::string utf8_from_latin1(std::string_view latin1)
{
    std::string utf8;
    utf8.reserve(latin1.size());
    for (const char character : latin1) {
        const auto code = static_cast<unsigned char>(character);
        if (is_pictured(code)) {
            utf8 += "\xE2\x90";
            utf8 += static_cast<char>(0x80U | code);
        } else if (code < 0x80) {
            utf8 += character;
        } else {
            utf8 += static_cast<char>(0xC0U | code >> 6U);
            utf8 += static_cast<char>(0x80U | (code & 0x3FU));
        }
    }
    return utf8;
}

Latin1Text latin1_from_utf8(std::string_view utf8)
{
    Latin1Text result;
    while (!utf8.empty()) {
        Character character = first_character(utf8);
        if (character.bytes == 0) {
            result.valid_utf8 = false;
            return result;
        }
        if (character.code >= pictures && is_pictured(character.code - pictures)) {
            character.code -= pictures;
        }
        if (character.code > 0xFF && result.foreign_character.empty()) {
            result.foreign_character =
                std::string(utf8.substr(0, character.bytes)) + " (U+" + hexadecimal(character.code, 4) + ")";
        }
        result.text += static_cast<char>(character.code);
        utf8.remove_prefix(character.bytes);
    }
    return result;
}

std::string printable(std::string_view utf8)
{
    constexpr std::size_t longest = 80;
    std::string text;
    while (!utf8.empty()) {
        if (text.size() >= longest) {
            return text + "...";
        }
        const Character character = first_character(utf8);
        const std::size_t bytes = character.bytes == 0 ? 1 : character.bytes;
        const bool control = character.code < 0x20 || (character.code >= 0x7F && character.code < 0xA0);
        if (character.bytes == 0 || control) {
            for (const char byte : utf8.substr(0, bytes)) {
                text += "\\x" + hexadecimal(static_cast<unsigned char>(byte), 2);
            }
        } else {
            text += utf8.substr(0, bytes);
        }
        utf8.remove_prefix(bytes);
    }
    return text;
}

} // namespace velm
