#include "input_file/text_content.hpp"

#include <cstddef>

namespace velm {

std::string text_as_served(std::string_view field)
{
    return std::string(field.substr(0, field.find_last_not_of(' ') + 1));
}

std::optional<std::string> text_before_nul(std::string_view field)
{
    const std::string content = text_as_served(field);
    const bool ends_in_nul = !content.empty() && content.back() == '\0';
    if (ends_in_nul) {
        std::string text = content.substr(0, content.size() - 1);
        if (text.empty() || text.back() != ' ') { // a blank there would have been cut before the NUL was put
            return text;
        }
    }
    return content.size() == field.size() ? std::optional(content) : std::nullopt;
}

std::string text_before_nul_or_cut(std::string_view beginning)
{
    return text_before_nul(beginning).value_or(std::string(beginning) + '.');
}

std::string printable_field(std::string_view bytes)
{
    constexpr std::size_t longest = 80;
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const char byte : bytes) {
        if (text.size() >= longest) {
            return text + "...";
        }
        const auto code = static_cast<unsigned char>(byte);
        if (code < 0x20 || (code >= 0x7F && code < 0xA0)) {
            (text += "\\x") += {digits[code >> 4U], digits[code & 15U]};
        } else if (code < 0x80) {
            text += byte;
        } else {
            text += static_cast<char>(0xC0U | code >> 6U);
            text += static_cast<char>(0x80U | (code & 0x3FU));
        }
    }
    return text;
}

std::string in_quotes(std::string_view bytes)
{
    return std::string("'").append(printable_field(bytes)).append("'");
}

} // namespace velm
