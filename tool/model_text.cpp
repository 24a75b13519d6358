#include "tool/model_text.hpp"

namespace velm {

std::string printable_text(std::string_view text)
{
    std::string result;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x20 || (byte >= 0x7F && byte < 0xA0)) {
            result += '?';
        } else if (byte < 0x80) {
            result += character;
        } else { // the code is the character's number, which UTF-8 spreads over two bytes
            result += static_cast<char>(0xC0U | (byte >> 6U));
            result += static_cast<char>(0x80U | (byte & 0x3FU));
        }
    }
    return result;
}

} // namespace velm
