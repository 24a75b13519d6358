#include "plain_text/plain_text.hpp"

#include <algorithm>
#include <array>

namespace velm {
namespace {

std::string escape(char32_t code)
{
    return code < 0x100 ? "\\x" + hexadecimal(code, 2) : "\\u" + hexadecimal(code, 4);
}

/// `kept` is a steering character that stays; 0 for none, as a NUL never does.
std::string escaped(std::string_view utf8, std::size_t most, char32_t kept)
{
    std::string text;
    while (!utf8.empty()) {
        if (text.size() >= most) {
            return text + "...";
        }
        const Character character = first_character(utf8);
        const std::size_t bytes = std::max<std::size_t>(character.bytes, 1);
        if (character.bytes == 0) {
            text += escape(static_cast<unsigned char>(utf8.front()));
        } else if (is_steering(character.code) && (kept == 0 || character.code != kept)) {
            text += escape(character.code);
        } else {
            text += utf8.substr(0, bytes);
        }
        utf8.remove_prefix(bytes);
    }
    return text;
}

} // namespace

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

bool is_utf8(std::string_view text)
{
    while (!text.empty()) {
        const std::size_t bytes = first_character(text).bytes;
        if (bytes == 0) {
            return false;
        }
        text.remove_prefix(bytes);
    }
    return true;
}

bool is_steering(char32_t code)
{
    const auto within = [code](char32_t first, char32_t last) { return code >= first && code <= last; };
    const bool control = code < 0x20 || within(0x7F, 0x9F);
    const bool bidirectional =
        code == 0x061C || within(0x200E, 0x200F) || within(0x202A, 0x202E) || within(0x2066, 0x2069);
    return control || bidirectional || within(0x2028, 0x2029);
}

std::string printable(std::string_view utf8, std::size_t most)
{
    return escaped(utf8, most, 0);
}

std::string printable_lines(std::string_view message)
{
    return escaped(message, std::string_view::npos, U'\n');
}

std::string printable_latin1(std::string_view bytes, std::size_t most)
{
    std::string text;
    for (const char byte : bytes) {
        if (text.size() >= most) {
            return text + "...";
        }
        const auto code = static_cast<unsigned char>(byte);
        if (is_steering(code)) {
            text += escape(code);
        } else {
            append_latin1(text, byte);
        }
    }
    return text;
}

void append_latin1(std::string& utf8, char byte)
{
    const auto code = static_cast<unsigned char>(byte); // the character's number, which UTF-8 spreads over two bytes
    if (code < 0x80) {
        utf8 += byte;
    } else {
        utf8 += static_cast<char>(0xC0U | code >> 6U);
        utf8 += static_cast<char>(0x80U | (code & 0x3FU));
    }
}

std::string shown(const std::filesystem::path& file)
{
    return printable(file.string());
}

std::string hexadecimal(char32_t code, std::size_t digits)
{
    std::string text;
    for (; code != 0 || text.size() < digits; code >>= 4U) {
        text.insert(text.begin(), "0123456789ABCDEF"[code & 15U]);
    }
    return text;
}

} // namespace velm
