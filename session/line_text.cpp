#include "session/line_text.hpp"

#include <charconv>
#include <utility>

namespace velm {
namespace {

constexpr std::string_view hexadecimal = "0123456789abcdef";

bool is_printable(unsigned char code)
{
    return (code >= 0x20 && code < 0x7F) || code >= 0xA0;
}

char* put_byte(char* to, unsigned char code)
{
    if (!is_printable(code)) {
        std::memcpy(to, "\\u00", 4);
        to[4] = hexadecimal[code >> 4U];
        to[5] = hexadecimal[code & 15U];
        return to + 6;
    }
    if (code >= 0x80) {
        to[0] = static_cast<char>(0xC0U | code >> 6U);
        to[1] = static_cast<char>(0x80U | (code & 0x3FU));
        return to + 2;
    }
    to[0] = '\\';
    to += code == '"' || code == '\\' ? 1 : 0;
    *to = static_cast<char>(code);
    return to + 1;
}

} // namespace

char* put_large_integer(char* to, std::int64_t number) noexcept
{
    return std::to_chars(to, to + number_room, number).ptr;
}

char* put_text(char* to, std::string_view bytes) noexcept
{
    *to++ = '"';
    for (const char byte : bytes) {
        to = put_byte(to, static_cast<unsigned char>(byte));
    }
    *to++ = '"';
    return to;
}

std::string text_as_json(std::string_view bytes)
{
    std::string text(text_room(bytes.size()), '\0');
    text.resize(static_cast<std::size_t>(put_text(text.data(), bytes) - text.data()));
    return text;
}

char* put_equal_ranges(char* to, std::string_view before, std::string_view after) noexcept
{
    *to++ = '[';
    bool is_first = true;
    for (std::size_t first = 0; first < after.size(); ++first) {
        std::size_t end = first;
        while (end < after.size() && before[end] == after[end]) {
            ++end;
        }
        if (end != first) {
            *to = ',';
            to += std::exchange(is_first, false) ? 0 : 1;
            *to++ = '[';
            to = put_integer(to, static_cast<std::int64_t>(first + 1));
            *to++ = ',';
            to = put_integer(to, static_cast<std::int64_t>(end));
            *to++ = ']';
            first = end;
        }
    }
    *to++ = ']';
    return to;
}

} // namespace velm
