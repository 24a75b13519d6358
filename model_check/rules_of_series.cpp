#include "model/items.hpp"
#include "model/real_in_words.hpp"
#include "model/words.hpp"
#include "model_check/item_words.hpp"
#include "model_check/rules.hpp"
#include "water_balance/series_facts.hpp"
#include "water_balance/series_list.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace velm {

namespace {

/// The pair at a place of a series, from 0.
Address pair_at(const SeriesItem& item, std::size_t place, std::string_view column)
{
    return {item.table, column, {item.owner, item.number, static_cast<std::int64_t>(place + 1)}};
}

/// "boundary 1 of system 2"
std::string series_in_words(const SeriesItem& item)
{
    return item_in_words({item.table, "", {item.owner, item.number}});
}

/// The first pair of that time.
std::size_t place_of(double time, const TimeSeries& series)
{
    const auto found = std::ranges::find_if(series.times, [time](float one) { return double{one} == time; });
    return static_cast<std::size_t>(found - series.times.begin());
}

template <class Look>
void for_each_used(const Model& model, Look look)
{
    for (const SeriesItem& item : all_series(model)) {
        if (item.used && !item.series->times.empty()) {
            look(item);
        }
    }
}

std::string days_in_words(double days)
{
    const std::string figures = in_figures(days);
    return figures + (figures == "1" ? " day" : " days");
}

void look_for_gaps(const MeantModel& meant, const ReportMeaning& report)
{
    for_each_used(meant.model, [&](const SeriesItem& item) {
        const SeriesFacts facts = facts_of(*item.series);
        if (facts.gaps == 0) {
            return;
        }
        const SeriesGap& gap = facts.longest_gap;
        const std::string others = facts.gaps == 1 ? "" : " (its longest of " + std::to_string(facts.gaps) + " gaps)";
        report(pair_at(item, place_of(gap.to, *item.series), "time"),
               series_in_words(item) + " has no pair from " + meant.dates.in_words(gap.from) + ", to " +
                   meant.dates.in_words(gap.to) + others + ", where its usual step is " +
                   days_in_words(facts.usual_step),
               "fill the gap of " + days_in_words(gap.length()) + ", across which the engine draws a straight line");
    });
}

/// The least and the greatest time.
std::pair<double, double> span_of(const TimeSeries& series)
{
    const auto [first, last] = std::ranges::minmax(series.times);
    return {first, last};
}

/// False for a series of which nothing happens during the run. One with pairs before and behind it only still says
/// what holds during it.
bool meets_run(const TimeSeries& series, double end)
{
    const double late = end + time_rounding(end);
    const auto [first, last] = span_of(series);
    return (first <= 0 && last >= end) ||
           std::ranges::any_of(series.times, [late](float time) { return time >= 0 && time <= late; });
}

/// How much of the run a series may leave out: a usual step, of times that may be rounded to three digits; where a few
/// pairs tell none, a day if that is less.
double accepted_lack(const TimeSeries& series)
{
    constexpr std::size_t pairs_that_tell = 10;
    const SeriesFacts facts = facts_of(series);
    constexpr double rounding = 1e-3;
    return (1 + rounding) * (facts.pairs < pairs_that_tell ? std::min(1.0, facts.usual_step) : facts.usual_step);
}

/// "ends on 2001-04-09, day 39, before the end of the run (2001-05-10, day 70)"; empty where nothing lacks.
std::string lack_in_words(const MeantModel& meant, const TimeSeries& series, double first, double last)
{
    const double end = meant.water.end();
    if (first <= 0 && last >= end) {
        return {};
    }
    const double accepted = accepted_lack(series);
    std::string words;
    if (first > accepted + time_rounding(first)) {
        words = " begins on " + meant.dates.in_words(first) + ", after the start of the run";
    }
    if (end - last > accepted + time_rounding(end)) {
        words += (words.empty() ? " ends on " : ", and ends on ") + meant.dates.in_words(last) +
                 ", before the end of the run (" + meant.dates.in_words(end) + ")";
    }
    return words;
}

void look_for_short(const MeantModel& meant, const ReportMeaning& report)
{
    for_each_used(meant.model, [&](const SeriesItem& item) {
        const TimeSeries& series = *item.series;
        const double end = meant.water.end();
        if (series.times.size() < 2 || end <= 0 || !meets_run(series, end)) {
            return;
        }
        const auto [first, last] = span_of(series);
        const std::string words = lack_in_words(meant, series, first, last);
        if (!words.empty()) {
            const bool late = words.starts_with(" begins");
            report(
                pair_at(item, place_of(late ? first : last, series), "time"), series_in_words(item) + words,
                words.find(", and ends") != std::string::npos
                    ? "add pairs from day 0 up to the end; outside them the engine keeps the first and the last value"
                : late ? "add pairs from day 0 on, or start the run later; until its first pair the engine takes its "
                         "first value"
                       : "add pairs up to the end, or end the run earlier; behind its last pair the engine keeps its "
                         "last value");
        }
    });
}

void look_for_other_days(const MeantModel& meant, const ReportMeaning& report)
{
    const double end = meant.water.end();
    for_each_used(meant.model, [&](const SeriesItem& item) {
        if (end <= 0 || meets_run(*item.series, end)) {
            return;
        }
        const auto [first, last] = span_of(*item.series);
        const std::string start = meant.dates.date(0);
        report(pair_at(item, 0, "time"),
               series_in_words(item) + " has no pair between the start and the end of the run (" +
                   meant.dates.in_words(end) + "): it goes from " + meant.dates.in_words(first) + ", to " +
                   meant.dates.in_words(last),
               "count its times in days from the start of the run" + (start.empty() ? "" : " (" + start + ")") +
                   ", not in years or hours or from another date");
    });
}

/// What stands for a missing value in records. With six digits, -99999.99 becomes the last.
constexpr std::array marks{-999.F,    -999.9F,    -999.99F, -9999.F, -9999.9F, -9999.99F, -99999.F,
                           -99999.9F, -99999.99F, 1e30F,    -1e30F,  9.99e36F, -100'000.F};

bool is_mark(float value)
{
    return value < -998 || value > 1e29F ? std::ranges::find(marks, value) != marks.end() : false;
}

/// The same where the file shows more digits.
bool is_mark_in_columns(float value)
{
    return is_mark(value) && value != marks.back();
}

/// Finds the first value of a list that is wrong, and says how many more are; `pair(place)` is the address of one.
template <class Values, class IsWrong, class AddressOf, class Words>
void report_first(const Values& values, IsWrong is_wrong, AddressOf address_of, std::string_view others, Words words,
                  const ReportMeaning& report)
{
    const auto first = std::ranges::find_if(values, is_wrong);
    if (first == values.end()) {
        return;
    }
    const auto more = std::count_if(first + 1, values.end(), is_wrong);
    const Address address = address_of(static_cast<std::size_t>(first - values.begin()));
    const auto [message, remedy] = words(item_in_words(address), *first);
    report(address,
           message + (more == 0
                          ? ""
                          : (more == 1 ? ", as is " : ", as are ") + counted(static_cast<std::size_t>(more), others)),
           remedy);
}

void look_for_negative(const MeantModel& meant, const ReportMeaning& report)
{
    for_each_used(meant.model, [&](const SeriesItem& item) {
        if (item.table == "flow_value" || item.table == "time_function_value") {
            return;
        }
        report_first(
            item.series->values, [&](float value) { return value * item.factor < 0 && !is_mark(value); },
            [&](std::size_t place) { return pair_at(item, place, "value"); }, "more value",
            [&](const std::string& pair, float value) {
                const std::string after = in_figures(value * item.factor) + " " + std::string(item.unit);
                return std::pair{pair + " is " + real_in_words(value) + " (" + after + " after its factors), below 0",
                                 std::string("give a value of 0 or more; correct the sign, or the factors")};
            },
            report);
    });
    for_each_numbered(meant.model.systems, [&](const System& one, std::int64_t system) {
        report_first(
            one.initial_conditions,
            [](const InitialCondition& condition) {
                return condition.concentration < 0 && !is_mark(condition.concentration);
            },
            [&](std::size_t place) {
                return Address{"initial_condition", "concentration", {system, static_cast<std::int64_t>(place + 1)}};
            },
            "more value",
            [&](const std::string& segment, const InitialCondition& condition) {
                return std::pair{"the concentration at the start in " + segment + " is " +
                                     real_in_words(condition.concentration) + " mg/L, below 0",
                                 std::string("give a concentration of 0 or more")};
            },
            report);
    });
}

/// `item` is "value of pair 3 of load 1 of system 2", of a series, or another that cannot be left out.
std::pair<std::string, std::string> mark_in_words(const std::string& item, float value)
{
    return {"the " + item + " is " + real_in_words(value) + ", which stands for a missing one in records",
            std::string("put in the value that was meant") +
                (item.starts_with("value of pair ") ? ", or leave the pair out" : "") +
                "; the engine would take it for a measurement"};
}

std::pair<std::string, std::string> marked_value_in_words(const std::string& item, float value)
{
    return mark_in_words("value of " + item, value);
}

void look_for_marks_in_conditions(const Model& model, std::string_view column, float InitialCondition::*value,
                                  const ReportMeaning& report)
{
    for_each_numbered(model.systems, [&](const System& one, std::int64_t system) {
        report_first(
            one.initial_conditions, [value](const InitialCondition& condition) { return is_mark(condition.*value); },
            [&](std::size_t place) {
                return Address{"initial_condition", column, {system, static_cast<std::int64_t>(place + 1)}};
            },
            "more segment",
            [&](const std::string& item, const InitialCondition& condition) {
                return mark_in_words(name_in_words(column) + " at the start in " + item, condition.*value);
            },
            report);
    });
}

void look_for_marks(const MeantModel& meant, const ReportMeaning& report)
{
    for_each_used(meant.model, [&](const SeriesItem& item) {
        const bool in_columns = item.table == "load_value" || item.table == "time_function_value";
        report_first(
            item.series->values, in_columns ? is_mark_in_columns : is_mark,
            [&](std::size_t place) { return pair_at(item, place, "value"); }, "more pair", marked_value_in_words,
            report);
    });
    look_for_marks_in_conditions(meant.model, "concentration", &InitialCondition::concentration, report);
    look_for_marks_in_conditions(meant.model, "dissolved_fraction", &InitialCondition::dissolved_fraction, report);
    for_each_of<Parameter>(meant.model, [&](const Parameter& parameter, RowNumbers numbers) {
        if (parameter.used) {
            const auto address_of = [&](std::size_t place) {
                numbers[2] = static_cast<std::int64_t>(place + 1);
                return Address{"parameter_value", "value", numbers};
            };
            report_first(parameter.values, is_mark_in_columns, address_of, "more segment", marked_value_in_words,
                         report);
        }
    });
    for_each_of<Constant>(meant.model, [&](const Constant& constant, const RowNumbers& numbers) {
        if (constant.used && is_mark_in_columns(constant.value)) {
            const Address address{"constant", "value", numbers};
            auto [message, remedy] = marked_value_in_words(item_in_words(address), constant.value);
            report(address, std::move(message), std::move(remedy));
        }
    });
}

using enum Level;

constexpr std::array<MeaningRule, 5> series_rules{{
    {{"V503", "gap", warning, "fill the gap, across which the engine draws a straight line"}, look_for_gaps},
    {{"V504", "does not cover the run", warning, "add pairs up to both ends of the run"}, look_for_short},
    {{"V505", "not days of the run", warning, "count the times in days from the start of the run"},
     look_for_other_days},
    {{"V512", "negative series", warning, "give values of 0 or more"}, look_for_negative},
    {.rule = {"V513", "mark of a missing value", warning, "put in the value that was meant, or leave a pair out"},
     .look = look_for_marks,
     .sees_gaps = true}, // a field that holds a mark is often too short for it
}};

} // namespace

std::span<const MeaningRule> rules_of_series()
{
    return series_rules;
}

} // namespace velm
