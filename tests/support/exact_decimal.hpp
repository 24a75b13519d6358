#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

/// The rules of real numbers once more, slowly: digits by multiplying whole numbers out, texts by moving characters.
/// Shares nothing with what it checks.
namespace velm::exact {

/// 0.D1D2...D8 times ten to the power k, cut off after the eighth digit; "00000000" for zero.
struct Digits {
    std::string eight = "00000000";
    int k = 0;
};

/// A whole number of any size, in limbs of nine decimal digits, the lowest first.
class WholeNumber {
public:
    explicit WholeNumber(std::uint32_t number) : limbs_{number} {}

    void multiply(std::uint32_t factor)
    {
        std::uint64_t carry = 0;
        for (std::uint64_t& limb : limbs_) {
            carry += limb * factor;
            limb = carry % limb_size;
            carry /= limb_size;
        }
        if (carry != 0) {
            limbs_.push_back(carry);
        }
    }

    [[nodiscard]] std::string decimal() const
    {
        std::string text = std::to_string(limbs_.back());
        for (std::size_t i = limbs_.size() - 1; i-- != 0;) {
            const std::string nine = std::to_string(limbs_[i]);
            text += std::string(9 - nine.size(), '0') + nine;
        }
        return text;
    }

private:
    static constexpr std::uint64_t limb_size = 1'000'000'000;
    std::vector<std::uint64_t> limbs_;
};

/// The digits of a finite magnitude, the lower 31 bits of a single-precision pattern.
inline Digits digits_of(std::uint32_t magnitude)
{
    const int biased = static_cast<int>(magnitude >> 23);
    const std::uint32_t significand = (magnitude & 0x7fffffU) | (biased != 0 ? 0x800000U : 0U);
    if (significand == 0) {
        return {};
    }
    // m / 2^n is m * 5^n / 10^n
    const int power = (biased != 0 ? biased : 1) - 150;
    WholeNumber number(significand);
    for (int left = std::abs(power); left > 0;) {
        const int step = left < 12 ? left : 12;
        std::uint32_t factor = 1;
        for (int i = 0; i < step; ++i) {
            factor *= power < 0 ? 5 : 2;
        }
        number.multiply(factor);
        left -= step;
    }
    std::string all = number.decimal();
    const int k = static_cast<int>(all.size()) + (power < 0 ? power : 0);
    all.resize(8, '0');
    return {all, k};
}

/// Rounds so that `places` digits after the point are left; digits that are not shown become 0.
inline Digits rounded(Digits value, int places)
{
    int decides = value.k + places + 1; // number of the first digit not shown, from 1
    if (decides > 8) {
        if (value.eight[7] < '5') {
            return value;
        }
        decides = 8;
    }
    if (decides < 1) {
        return value;
    }
    const auto shown = static_cast<std::size_t>(decides - 1);
    const bool up = value.eight[shown] >= '5';
    value.eight.replace(shown, std::string::npos, 8 - shown, '0');
    std::size_t at = shown;
    while (up && at != 0 && value.eight[at - 1] == '9') {
        value.eight[--at] = '0';
    }
    if (up && at != 0) {
        ++value.eight[at - 1];
    } else if (up) {
        value.eight = "10000000";
        ++value.k;
    }
    return value;
}

/// Digits before the point ("" for none), and `places` digits behind it.
inline std::string fixed_point(const Digits& value, int places)
{
    std::string text = value.k < 0 ? std::string(static_cast<std::size_t>(-value.k), '0') + value.eight : value.eight;
    const auto before = static_cast<std::size_t>(value.k < 0 ? 0 : value.k);
    text.resize(before + static_cast<std::size_t>(places), '0');
    return text.insert(before, 1, '.');
}

inline std::string real_field(std::size_t width, std::size_t decimals, bool negative, const Digits& value)
{
    const int places = static_cast<int>(decimals);
    const Digits shown = rounded(value, places);
    const bool zero = shown.eight[0] == '0' || shown.k + places <= 0;
    std::string text = zero ? fixed_point({}, places) : fixed_point(shown, places);
    const std::string sign = negative && !zero ? "-" : "";
    if (text[0] == '.' && sign.size() + 1 + text.size() <= width) {
        text.insert(0, 1, '0');
    }
    text.insert(0, sign);
    return text.size() > width ? std::string(width, '*') : std::string(width - text.size(), ' ') + text;
}

inline std::string free_real(bool negative, const Digits& value)
{
    if (value.eight[0] == '0') {
        return "0.000000";
    }
    const std::string sign = negative ? "-" : "";
    const int k = rounded(value, 7).k;
    if (k >= 0 && k <= 6) {
        const int places = 6 - rounded(value, 6 - k).k;
        if (places >= 0) { // not from 999,999.5 to 1,000,000
            const std::string text = fixed_point(rounded(value, places), places);
            return sign + (text[0] == '.' ? "0" : "") + text;
        }
    }
    const Digits seven = rounded(value, 7 - value.k);
    const int power = seven.k - 1;
    const std::string size = std::to_string(std::abs(power));
    return sign + seven.eight.substr(0, 1) + "." + seven.eight.substr(1, 6) + (power < 0 ? "E-" : "E+") +
           (size.size() < 2 ? "0" : "") + size;
}

/// What the two functions above do not cover: infinite patterns and those that are no number; "" for others.
inline std::string not_finite(std::uint32_t bits)
{
    const std::uint32_t magnitude = bits & 0x7fffffffU;
    return magnitude < 0x7f800000U ? "" : magnitude > 0x7f800000U ? "NaN" : bits == magnitude ? "INF" : "-INF";
}

} // namespace velm::exact
