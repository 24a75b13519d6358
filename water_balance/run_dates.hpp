#pragma once

#include "model/model.hpp"

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace velm {

/// The date that three integers make, in whatever order they stand; the year is the one from 1000 to 3000. Where two
/// orders make a date, year-month-day goes before year-day-month, month-day-year before day-month-year, and
/// month-year-day before day-year-month. Nothing when no order makes one.
[[nodiscard]] std::optional<std::chrono::year_month_day> date_of(const std::array<std::int32_t, 3>& integers);

/// Hour, minute and second, in this order. Nothing when they are no time of day.
[[nodiscard]] std::optional<std::chrono::seconds> time_of_day(const std::array<std::int32_t, 3>& integers);

/// Says days of the run with their dates.
class RunDates {
public:
    /// Day 0 is the model's start. When its date is none, days are said without dates; when its time is none, it
    /// counts as midnight.
    explicit RunDates(const Model& model);

    [[nodiscard]] bool known() const { return start_.has_value(); }
    /// "2001-04-09"; empty when the start is no date or the year would leave four digits.
    [[nodiscard]] std::string date(double day) const;
    /// "2001-04-09, day 39", or "day 39". The day has at most four decimals.
    [[nodiscard]] std::string in_words(double day) const;

private:
    std::optional<std::chrono::sys_seconds> start_;
};

/// A number in four significant figures where it is below 100, else with at most two decimals, and
/// from 100,000 on with none: "0.0131", "39", "1095.25"; "1.500e-09" where it is very small or very large.
[[nodiscard]] std::string in_figures(double number);

} // namespace velm
