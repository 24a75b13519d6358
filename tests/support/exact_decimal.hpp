#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

/// The rules of real numbers once more: digits by the C library, texts by moving characters in columns.
/// Shares nothing with what it checks.
namespace velm::exact {

/// 0.D1D2...D8 times ten to the power k, cut off after the eighth digit; 0 for zero.
struct Digits {
    std::uint32_t eight = 0;
    int k = 0;
};

/// What is no finite number in a word; "" for others.
inline std::string_view not_finite(std::uint32_t bits)
{
    const std::uint32_t magnitude = bits & 0x7fffffffU;
    return magnitude < 0x7f800000U ? "" : magnitude > 0x7f800000U ? "NaN" : bits == magnitude ? "INF" : "-INF";
}

/// The digits of a finite number's magnitude, from the C library, which writes all that there are: 112 at most.
inline Digits digits_of(std::uint32_t bits)
{
    const std::uint32_t magnitude = bits & 0x7fffffffU;
    if (magnitude == 0 || !not_finite(bits).empty()) {
        return {};
    }
    std::array<char, 160> text{}; // "1.4012984643248170...e-45"
    (void)std::snprintf(text.data(), text.size(), "%.111e", double{std::bit_cast<float>(magnitude)});
    const std::string eight = text[0] + std::string(&text[2], 7);
    return {static_cast<std::uint32_t>(std::stoul(eight)), std::atoi(std::strchr(text.data(), 'e') + 1) + 1};
}

/// A short text without the cost of a string: every single has eleven of them.
class Text {
public:
    void add(char character) { characters_.at(size_++) = character; }
    void add(std::size_t count, char character)
    {
        for (; count != 0; --count) {
            add(character);
        }
    }
    void add(std::string_view text)
    {
        for (const char character : text) {
            add(character);
        }
    }
    [[nodiscard]] std::string_view view() const { return {characters_.data(), size_}; }

private:
    std::array<char, 64> characters_{};
    std::size_t size_ = 0;
};

/// The digits of a number in columns, with zeros around them. The point stands before the column `point`.
class Columns {
public:
    static constexpr int point = 48; ///< k is from -44 to 39

    explicit Columns(const Digits& value) : first_digit_(point - value.k)
    {
        columns_.fill('0');
        std::uint32_t rest = value.eight;
        for (int at = first_digit_ + 7; at >= first_digit_; --at, rest /= 10) {
            column(at) = static_cast<char>('0' + rest % 10);
        }
    }

    [[nodiscard]] char operator[](int at) const { return columns_[static_cast<std::size_t>(at)]; }

    /// Nothing is left from the column `from` on; the digit there decides, or the eighth digit if that comes first.
    void round(int from)
    {
        const int eighth = first_digit_ + 7;
        if (from > eighth) {
            if (column(eighth) < '5') {
                return;
            }
            from = eighth;
        }
        bool up = column(from) >= '5';
        for (int at = std::max(from, first_digit_); at <= eighth; ++at) {
            column(at) = '0';
        }
        for (int at = from - 1; up; --at) {
            up = column(at) == '9';
            column(at) = up ? '0' : static_cast<char>(column(at) + 1);
        }
    }

    /// Where the first digit stands that is not 0; `end` when there is none before it.
    [[nodiscard]] int first_before(int end) const
    {
        int at = 0;
        while (at < end && (*this)[at] == '0') {
            ++at;
        }
        return at;
    }

    /// The digits from `first` to before `end`, with the point when that is among them.
    void show(int first, int end, Text& text) const
    {
        for (int at = first; at < end; ++at) {
            if (at == point) {
                text.add('.');
            }
            text.add((*this)[at]);
        }
        if (end == point) {
            text.add('.');
        }
    }

private:
    char& column(int at) { return columns_[static_cast<std::size_t>(at)]; }

    std::array<char, 112> columns_{};
    int first_digit_;
};

inline Text right_justified(std::string_view shown, std::size_t width)
{
    Text text;
    text.add(shown.size() > width ? width : width - shown.size(), shown.size() > width ? '*' : ' ');
    text.add(shown.size() > width ? "" : shown);
    return text;
}

/// The pattern `bits` in a field, given its digits when it is a finite number.
inline Text real_field(std::size_t width, std::size_t decimals, std::uint32_t bits, const Digits& digits)
{
    if (const std::string_view word = not_finite(bits); !word.empty()) {
        return right_justified(word, width);
    }
    const int end = Columns::point + static_cast<int>(decimals);
    Columns columns(digits);
    columns.round(end);
    const int first = std::min(columns.first_before(end), Columns::point);
    const bool minus = bits >> 31 != 0 && columns.first_before(end) < end;
    const auto size = static_cast<std::size_t>(end - first) + 1 + (minus ? 1 : 0);
    Text text;
    if (size > width) {
        text.add(width, '*');
        return text;
    }
    const bool zero_before_point = first == Columns::point && size < width;
    text.add(width - size - (zero_before_point ? 1 : 0), ' ');
    text.add(minus ? "-" : "");
    text.add(zero_before_point ? "0" : "");
    columns.show(first, end, text);
    return text;
}

/// The pattern `bits` in the free form, given its digits when it is a finite number.
inline Text free_real(std::uint32_t bits, const Digits& digits)
{
    constexpr int point = Columns::point;
    Text text;
    if (const std::string_view word = not_finite(bits); !word.empty()) {
        text.add(word);
        return text;
    }
    if (digits.eight == 0) {
        text.add("0.000000");
        return text;
    }
    text.add(bits >> 31 != 0 ? "-" : "");
    Columns seven_places(digits);
    seven_places.round(point + 7);
    const int k = point - seven_places.first_before(point + 7);
    if (k >= 0 && k <= 6) {
        Columns six(digits);
        six.round(point - k + 6);
        const int first = six.first_before(point);
        if (point - first <= 6) { // not from 999,999.5 to 1,000,000
            text.add(first == point ? "0" : "");
            Columns shown(digits);
            shown.round(first + 6);
            shown.show(first, first + 6, text);
            return text;
        }
    }
    Columns seven(digits);
    seven.round(point - digits.k + 7);
    const int first = seven.first_before(point - digits.k + 7);
    const int power = point - first - 1;
    text.add(seven[first]);
    text.add('.');
    for (int at = first + 1; at < first + 7; ++at) {
        text.add(seven[at]);
    }
    text.add(power < 0 ? "E-" : "E+");
    text.add(static_cast<char>('0' + std::abs(power) / 10));
    text.add(static_cast<char>('0' + std::abs(power) % 10));
    return text;
}

} // namespace velm::exact
