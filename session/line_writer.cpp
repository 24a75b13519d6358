#include "session/line_writer.hpp"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstring>
#include <utility>

namespace velm {
namespace {

constexpr std::string_view hexadecimal = "0123456789abcdef";

bool is_printable(unsigned char code)
{
    return (code >= 0x20 && code < 0x7F) || code >= 0xA0;
}

} // namespace

void LineWriter::grow(std::size_t size)
{
    const std::size_t capacity = std::max({std::size_t{4096}, 2 * capacity_, size_ + size});
    auto characters = std::make_unique<char[]>(capacity);
    std::copy_n(characters_.get(), size_, characters.get());
    characters_ = std::move(characters);
    capacity_ = capacity;
}

void LineWriter::put_integer(std::int64_t value)
{
    constexpr std::size_t most_characters = 20;
    make_room(most_characters);
    char* const begin = characters_.get() + size_;
    size_ += static_cast<std::size_t>(std::to_chars(begin, begin + most_characters, value).ptr - begin);
}

void LineWriter::put_real(float value)
{
    constexpr std::size_t most_characters = 32; // "-1.1754944e-38 80800000" and its quotes take 25
    make_room(most_characters);
    char* const begin = characters_.get() + size_;
    char* end = begin;
    *end++ = '"';
    const auto bits = std::bit_cast<std::uint32_t>(value);
    constexpr float first_beyond = 1 << 24; // below, whole numbers are their own shortest decimals
    if (value > -first_beyond && value < first_beyond && value == static_cast<float>(static_cast<int>(value)) &&
        bits != std::bit_cast<std::uint32_t>(-0.0F)) {
        end = std::to_chars(end, begin + most_characters, static_cast<int>(value)).ptr;
    } else {
        end = std::to_chars(end, begin + most_characters, value).ptr;
    }
    *end++ = ' ';
    for (unsigned shift = 32; shift != 0; shift -= 4) {
        *end++ = hexadecimal[bits >> (shift - 4) & 15U];
    }
    *end++ = '"';
    size_ += static_cast<std::size_t>(end - begin);
}

void LineWriter::put_byte(unsigned char code)
{
    const auto byte = [](unsigned value) { return static_cast<char>(value); };
    char* const to = characters_.get() + size_;
    if (!is_printable(code)) {
        std::memcpy(to, "\\u00", 4);
        to[4] = hexadecimal[code >> 4U];
        to[5] = hexadecimal[code & 15U];
        size_ += 6;
    } else if (code >= 0x80) {
        to[0] = byte(0xC0U | code >> 6U);
        to[1] = byte(0x80U | (code & 0x3FU));
        size_ += 2;
    } else {
        const bool escaped = code == '"' || code == '\\';
        to[0] = '\\';
        to[escaped ? 1 : 0] = byte(code);
        size_ += escaped ? 2 : 1;
    }
}

void LineWriter::put_text(std::string_view bytes)
{
    constexpr std::size_t most_for_a_byte = 6;
    make_room(2 + bytes.size() * most_for_a_byte);
    put_without_check("\"");
    for (const char byte : bytes) {
        put_byte(static_cast<unsigned char>(byte));
    }
    put_without_check("\"");
}

void LineWriter::put_series(std::span<const float> reals)
{
    put("[");
    const char* separator = "";
    for (const float real : reals) {
        put(std::exchange(separator, ","));
        put_real(real);
    }
    put("]");
}

void LineWriter::put_equal_ranges(std::string_view before, std::string_view after)
{
    put("[");
    const char* separator = "";
    for (std::size_t first = 0; first < after.size(); ++first) {
        std::size_t end = first;
        while (end < after.size() && before[end] == after[end]) {
            ++end;
        }
        if (end != first) {
            put(std::exchange(separator, ","));
            put("[");
            put_integer(static_cast<std::int64_t>(first + 1));
            put(",");
            put_integer(static_cast<std::int64_t>(end));
            put("]");
            first = end;
        }
    }
    put("]");
}

} // namespace velm
