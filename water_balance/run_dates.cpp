#include "water_balance/run_dates.hpp"

#include "model/real_in_words.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace velm {

namespace {

using std::chrono::year_month_day;

std::string in_digits(double value, int decimals)
{
    std::array<char, 400> text{}; // the longest double has 309 digits before its point
    const int length = std::snprintf(text.data(), text.size(), "%.*f", decimals, value);
    std::string digits(text.data(), static_cast<std::size_t>(length));
    if (digits.find('.') != std::string::npos) {
        digits.erase(digits.find_last_not_of('0') + 1);
        digits.erase(digits.find_last_not_of('.') + 1);
    }
    return digits == "-0" ? "0" : digits;
}

} // namespace

std::optional<year_month_day> date_of(const std::array<std::int32_t, 3>& integers)
{
    const auto* const year =
        std::find_if(integers.begin(), integers.end(), [](auto i) { return i >= 1000 && i <= 3000; });
    if (year == integers.end()) {
        return std::nullopt;
    }
    const std::int32_t one = integers[year == integers.begin() ? 1 : 0];
    const std::int32_t other = integers[year == integers.end() - 1 ? 1 : 2];
    for (const auto& [month, day] : {std::pair{one, other}, {other, one}}) {
        if (month >= 1 && month <= 12 && day >= 1 && day <= 31) {
            const year_month_day date{std::chrono::year{*year}, std::chrono::month{static_cast<unsigned>(month)},
                                      std::chrono::day{static_cast<unsigned>(day)}};
            if (date.ok()) {
                return date;
            }
        }
    }
    return std::nullopt;
}

std::optional<std::chrono::seconds> time_of_day(const std::array<std::int32_t, 3>& integers)
{
    const auto [hour, minute, second] = integers;
    if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59) {
        return std::nullopt;
    }
    return std::chrono::hours{hour} + std::chrono::minutes{minute} + std::chrono::seconds{second};
}

RunDates::RunDates(const Model& model)
{
    if (const auto date = date_of(model.start_date)) {
        start_ = std::chrono::sys_days{*date} + time_of_day(model.start_time).value_or(std::chrono::seconds{0});
    }
}

std::string RunDates::date(double day) const
{
    constexpr double days_of_four_digits = 9999 * 366.0;
    if (!start_ || !(std::abs(day) < days_of_four_digits)) {
        return {};
    }
    const auto moment = *start_ + std::chrono::seconds{static_cast<std::int64_t>(std::floor(day * 86'400))};
    const year_month_day date{std::chrono::floor<std::chrono::days>(moment)};
    const int year = static_cast<int>(date.year());
    if (year < 0 || year > 9999) {
        return {};
    }
    std::array<char, 40> text{};
    const int length = std::snprintf(text.data(), text.size(), "%04d-%02u-%02u", year,
                                     static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
    return {text.data(), static_cast<std::size_t>(length)};
}

std::string RunDates::in_words(double day) const
{
    const auto single = static_cast<float>(day); // 10000.1 rather than what is nearest to it in single precision
    const double shown = double{single} == day ? std::stod(real_in_words(single)) : day;
    const std::string words = "day " + in_digits(shown, 4);
    const std::string date = this->date(day);
    return date.empty() ? words : date + ", " + words;
}

std::string in_figures(double number)
{
    if (!std::isfinite(number)) {
        return std::isnan(number) ? "unknown" : "infinite";
    }
    const double magnitude = std::abs(number);
    if (magnitude != 0 && (magnitude < 1e-4 || magnitude >= 1e15)) {
        std::array<char, 32> text{};
        return {text.data(),
                std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::scientific, 3).ptr};
    }
    if (magnitude == 0 || magnitude >= 100) {
        return in_digits(number, magnitude < 1e5 ? 2 : 0);
    }
    const int before_point = static_cast<int>(std::floor(std::log10(magnitude))) + 1;
    return in_digits(number, 4 - before_point);
}

} // namespace velm
