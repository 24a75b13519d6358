#include "model_store/latin1.hpp"

#include "plain_text/plain_text.hpp"

namespace velm {

namespace {

constexpr char32_t pictures = 0x2400; ///< of the control characters

constexpr bool is_pictured(char32_t code)
{
    return code == 0 || code == '\n' || code == '\r';
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
        } else {
            append_latin1(utf8, character);
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

} // namespace velm
