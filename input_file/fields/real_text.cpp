#include "input_file/fields/real_text.hpp"

#include "model/words.hpp"
#include "record_output/real_rendering.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace velm {
namespace {

constexpr std::size_t widest_field = 20;

/// digits * 10^exponent
struct Decimal {
    bool valid = false;
    bool negative = false;
    std::uint64_t digits = 0;
    int exponent = 0;
};

constexpr bool is_digit(char character)
{
    return character >= '0' && character <= '9';
}

/// Takes a number in any usual way of writing it: 12, -1.5, .5, 1.5e3, 1.5D+03. Digits beyond the eighteenth are
/// dropped, which is far below single precision.
Decimal decimal_of(std::string_view text)
{
    constexpr std::uint64_t room = 100'000'000'000'000'000U;
    Decimal number;
    std::size_t at = 0;
    if (at < text.size() && (text[at] == '-' || text[at] == '+')) {
        number.negative = text[at++] == '-';
    }
    const auto take_digits = [&](int exponent_if_taken, int exponent_if_dropped) {
        for (; at < text.size() && is_digit(text[at]); ++at) {
            number.valid = true;
            if (number.digits < room) {
                number.digits = number.digits * 10 + static_cast<std::uint64_t>(text[at] - '0');
                number.exponent += exponent_if_taken;
            } else {
                number.exponent += exponent_if_dropped;
            }
        }
    };
    take_digits(0, 1);
    if (at < text.size() && text[at] == '.') {
        ++at;
        take_digits(-1, 0);
    }
    if (at == text.size() || !number.valid) {
        number.valid = number.valid && at == text.size();
        return number;
    }
    const char mark = text[at++];
    at += at < text.size() && text[at] == '+' ? 1 : 0;
    int exponent = 0;
    const auto read = std::from_chars(text.data() + at, text.data() + text.size(), exponent);
    constexpr int largest_exponent = 9999;
    number.valid = (mark == 'E' || mark == 'e' || mark == 'D' || mark == 'd') && read.ec == std::errc() &&
                   read.ptr == text.data() + text.size() && std::abs(exponent) <= largest_exponent;
    number.exponent += exponent;
    return number;
}

constexpr std::array<double, 23> exact_powers{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                              1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

double magnitude_of(const Decimal& number)
{
    const auto digits = static_cast<double>(number.digits);
    const auto power = static_cast<std::size_t>(std::abs(number.exponent));
    if (power < exact_powers.size()) {
        return number.exponent < 0 ? digits / exact_powers[power] : digits * exact_powers[power];
    }
    if (number.digits == 0) {
        return 0;
    }
    constexpr std::ptrdiff_t most_digits = 20;
    std::array<char, 32> text{};
    char* end = std::to_chars(text.begin(), text.begin() + most_digits, number.digits).ptr;
    *end++ = 'e';
    end = std::to_chars(end, text.end(), number.exponent).ptr;
    double magnitude = 0;
    if (std::from_chars(text.begin(), end, magnitude).ec != std::errc()) { // beyond double precision on either side
        return number.exponent < 0 ? 0 : HUGE_VAL;
    }
    return magnitude;
}

void render_field(char* field, std::size_t width, std::size_t decimals, float value)
{
    switch (width * 10 + decimals) {
    case 104: return render_real_field<10, 4>(field, value);
    case 146: return render_real_field<14, 6>(field, value);
    case 155: return render_real_field<15, 5>(field, value);
    case 204: return render_real_field<20, 4>(field, value);
    default: return render_real_field_in_full(field, width, decimals, value);
    }
}

template <class Word>
bool are_same_words(const char* one, const char* other)
{
    return std::memcmp(one, other, sizeof(Word)) == 0;
}

/// memcmp() takes several times as long for bytes that were written just before.
bool are_same(const char* one, const char* other, std::size_t size)
{
    if (size < 4) {
        return std::memcmp(one, other, size) == 0;
    }
    if (size < 8) {
        return are_same_words<std::uint32_t>(one, other) &&
               are_same_words<std::uint32_t>(one + size - 4, other + size - 4);
    }
    for (std::size_t at = 0; at + 8 < size; at += 8) {
        if (!are_same_words<std::uint64_t>(one + at, other + at)) {
            return false;
        }
    }
    return are_same_words<std::uint64_t>(one + size - 8, other + size - 8);
}

bool is_field_text_of(float value, std::string_view text, std::size_t decimals)
{
    std::array<char, widest_field> field; // NOLINT(cppcoreguidelines-pro-type-member-init): filled below
    render_field(field.data(), text.size(), decimals, value);
    return are_same(field.data(), text.data(), text.size());
}

bool is_row_text_of(float value, std::string_view text)
{
    std::array<char, free_real_room> row; // NOLINT(cppcoreguidelines-pro-type-member-init): filled below
    const char* const end = render_free_real(row.data(), value);
    return static_cast<std::size_t>(end - row.data()) == text.size() && are_same(row.data(), text.data(), text.size());
}

/// The magnitude that lies `steps` representable values further from zero.
float stepped(float value, int steps)
{
    const auto bits = std::bit_cast<std::uint32_t>(value);
    const std::int64_t magnitude = std::int64_t{bits & single::magnitude_bits} + steps;
    if (magnitude < 0 || magnitude >= std::int64_t{single::infinity}) {
        return value;
    }
    return std::bit_cast<float>((bits & single::sign_bit) | static_cast<std::uint32_t>(magnitude));
}

/// The value that `is_text_of` says yes to, near the number that `text` says.
///
/// A text stands for an interval of values: around the number that it spells when digits were rounded away, from that
/// number up when all eight digits are shown, for they are cut. So the nearest value may lie just outside, and the one
/// beside it within: 0.10000001 of single precision is 0.100000001490116, but the value that an export shows so may be
/// its neighbour.
template <class IsTextOf>
RealText value_of(std::string_view text, const IsTextOf& is_text_of)
{
    const Decimal number = decimal_of(text);
    if (!number.valid) {
        const bool negative = !text.empty() && text.front() == '-';
        const std::string_view word = text.substr(negative ? 1 : 0);
        const bool not_finite = word == "INF" || (word == "NaN" && !negative);
        return {not_finite ? RealTextKind::not_finite : RealTextKind::no_number};
    }
    constexpr double beyond_single = 3.5e38;
    const double exact = magnitude_of(number);
    const float magnitude = exact > beyond_single ? HUGE_VALF : static_cast<float>(exact);
    if (std::isinf(magnitude) || (magnitude == 0 && number.digits != 0)) {
        return {RealTextKind::no_single};
    }
    const float nearest = number.negative && magnitude != 0 ? -magnitude : magnitude;
    if (is_text_of(nearest)) [[likely]] {
        return {RealTextKind::exact, nearest};
    }
    for (const int steps : {-1, 1, -2, 2}) {
        if (const float neighbour = stepped(nearest, steps); is_text_of(neighbour)) {
            return {RealTextKind::exact, neighbour};
        }
    }
    return {RealTextKind::other_form, nearest};
}

} // namespace

RealText real_in_field(std::string_view text, std::size_t decimals)
{
    const std::string_view number = without_blanks(text);
    if (number.empty()) {
        return {RealTextKind::no_number};
    }
    if (text.find_first_not_of('*') == std::string_view::npos) {
        return {RealTextKind::asterisks};
    }
    return value_of(number, [&](float value) { return is_field_text_of(value, text, decimals); });
}

RealText real_in_row(std::string_view text)
{
    return value_of(text, [&](float value) { return is_row_text_of(value, text); });
}

std::string field_text(float value, std::size_t width, std::size_t decimals)
{
    std::string text(width, ' ');
    render_field(text.data(), width, decimals, value);
    return text;
}

std::string row_text(float value)
{
    std::array<char, free_real_room> row{};
    return {row.data(), render_free_real(row.data(), value)};
}

} // namespace velm
