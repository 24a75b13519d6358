#include "session/line_writer.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstring>
#include <utility>

namespace velm {
namespace {

constexpr std::string_view hexadecimal = "0123456789abcdef";

/// "000102...ff"
constexpr auto hexadecimal_bytes = [] {
    std::array<char, std::size_t{2} * 256> digits{};
    for (std::size_t i = 0; i < 256; ++i) {
        digits[2 * i] = hexadecimal[i >> 4U];
        digits[2 * i + 1] = hexadecimal[i & 15U];
    }
    return digits;
}();

constexpr std::size_t most_for_a_real = 32; // "-1.1754944e-38 80800000" and its quotes take 25

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
    char* const limit = begin + most_characters;
    const auto small = static_cast<std::uint32_t>(value); // its digits take half the time
    const char* const end =
        value == std::int64_t{small} ? std::to_chars(begin, limit, small).ptr : std::to_chars(begin, limit, value).ptr;
    size_ += static_cast<std::size_t>(end - begin);
}

void LineWriter::put_real(float value)
{
    make_room(most_for_a_real);
    put_real_without_check(value);
}

void LineWriter::put_real_without_check(float value)
{
    char* const begin = characters_.get() + size_;
    char* const limit = begin + most_for_a_real;
    char* end = begin;
    *end++ = '"';
    const auto bits = std::bit_cast<std::uint32_t>(value);
    constexpr float first_beyond = 1 << 24; // below, whole numbers are their own shortest decimals
    if (value > -first_beyond && value < first_beyond && value == static_cast<float>(static_cast<int>(value)) &&
        bits != std::bit_cast<std::uint32_t>(-0.0F)) {
        end = std::to_chars(end, limit, static_cast<int>(value)).ptr;
    } else {
        end = std::to_chars(end, limit, value).ptr;
    }
    *end++ = ' ';
    for (unsigned shift = 32; shift != 0;) {
        shift -= 8;
        end = std::copy_n(&hexadecimal_bytes[std::size_t{2} * (bits >> shift & 0xFFU)], 2, end);
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

void LineWriter::put_reals(std::span<const float> reals)
{
    make_room(reals.size() * (1 + most_for_a_real));
    for (const float real : reals) {
        put_real_without_check(real);
        characters_[size_++] = ',';
    }
    size_ -= reals.empty() ? 0 : 1;
}

void LineWriter::put_equal_ranges(std::string_view before, std::string_view after)
{
    char separator = '[';
    for (std::size_t first = 0; first < after.size(); ++first) {
        std::size_t end = first;
        while (end < after.size() && before[end] == after[end]) {
            ++end;
        }
        if (end != first) {
            put(std::exchange(separator, ','));
            put('[');
            put_integer(static_cast<std::int64_t>(first + 1));
            put(',');
            put_integer(static_cast<std::int64_t>(end));
            put(']');
            first = end;
        }
    }
    if (separator == '[') {
        put('[');
    }
    put(']');
}

} // namespace velm
