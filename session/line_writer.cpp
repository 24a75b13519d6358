#include "session/line_writer.hpp"

#include <array>
#include <bit>
#include <charconv>
#include <utility>

namespace velm {
namespace {

constexpr std::string_view hexadecimal = "0123456789abcdef";

bool is_printable(unsigned char code)
{
    return (code >= 0x20 && code < 0x7F) || code >= 0xA0;
}

void append_character(std::string& line, unsigned char code)
{
    if (!is_printable(code)) {
        line.append("\\u00").append({hexadecimal[code >> 4U], hexadecimal[code & 15U]});
    } else if (code < 0x80) {
        line.append(code == '"' || code == '\\' ? "\\" : "") += static_cast<char>(code);
    } else {
        line.append({static_cast<char>(0xC0U | code >> 6U), static_cast<char>(0x80U | (code & 0x3FU))});
    }
}

} // namespace

void append_integer(std::string& line, std::int64_t value)
{
    std::array<char, 20> characters;
    line.append(characters.data(), std::to_chars(characters.begin(), characters.end(), value).ptr);
}

void append_real(std::string& line, float value)
{
    std::array<char, 32> characters;
    char* end = characters.data();
    *end++ = '"';
    end = std::to_chars(end, characters.end(), value).ptr;
    *end++ = ' ';
    const auto bits = std::bit_cast<std::uint32_t>(value);
    for (unsigned shift = 32; shift != 0; shift -= 4) {
        *end++ = hexadecimal[bits >> (shift - 4) & 15U];
    }
    *end++ = '"';
    line.append(characters.data(), end);
}

void append_text(std::string& line, std::string_view bytes)
{
    line += '"';
    for (const char byte : bytes) {
        append_character(line, static_cast<unsigned char>(byte));
    }
    line += '"';
}

void append_series(std::string& line, std::span<const float> reals)
{
    const char* separator = "[";
    for (const float real : reals) {
        line += std::exchange(separator, ",");
        append_real(line, real);
    }
    line += *separator == '[' ? "[]" : "]";
}

void append_equal_ranges(std::string& line, std::string_view before, std::string_view after)
{
    const char* separator = "[";
    for (std::size_t first = 0; first < after.size(); ++first) {
        std::size_t end = first;
        while (end < after.size() && before[end] == after[end]) {
            ++end;
        }
        if (end != first) {
            line.append(std::exchange(separator, ",")) += '[';
            append_integer(line, static_cast<std::int64_t>(first + 1));
            line += ',';
            append_integer(line, static_cast<std::int64_t>(end));
            line += ']';
            first = end;
        }
    }
    line += *separator == '[' ? "[]" : "]";
}

} // namespace velm
