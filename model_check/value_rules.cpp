#include "model_check/rules.hpp"

#include "model/items.hpp"
#include "model/real_in_words.hpp"

#include <algorithm>
#include <array>

namespace velm {

namespace {

std::string more(std::ptrdiff_t others, const char* where)
{
    return others == 0 ? "" : ", and " + std::to_string(others) + " more " + where;
}

/// Calls look(series, address of the series as a whole) for each series that is exported.
template <class Look>
void for_each_series(const Model& model, Look look)
{
    for_each_item(model, [&](const auto& table, const RowNumbers& numbers, const auto& item) {
        if constexpr (requires { item.series; }) {
            bool used = true;
            if constexpr (requires { item.used; }) {
                used = item.used;
            }
            if (used) {
                look(item.series, Address{series_of(table.name).name, {}, numbers});
            }
        }
    });
}

/// Calls look(value, address) for each real of a column with that rule.
template <class Look>
void for_each_real(const Model& model, Rule rule, Look look)
{
    for_each_item(model, [&](const auto& table, const RowNumbers& numbers, const auto& item) {
        for (const auto& column : table.columns) {
            if (column.rule == rule) {
                with_value(column, item, [&](const auto& value) {
                    if constexpr (std::is_same_v<decltype(value), const float&>) {
                        look(value, Address{table.name, column.name, numbers});
                    }
                });
            }
        }
    });
}

/// Calls look(path or pair, its address) for each that joins two segments.
template <class Look>
void for_each_path(const Model& model, Look look)
{
    for_each_item(model, [&](const auto& table, const RowNumbers& numbers, const auto& item) {
        if constexpr (requires { item.first_segment; }) {
            look(item, Address{table.name, "second_segment", numbers});
        }
    });
}

/// Of each series, the first pair whose time is wrong after the one before it, and how many are.
template <class Predicate>
void look_at_times(const Model& model, const ReportMeaning& report, Predicate is_wrong)
{
    for_each_series(model, [&](const TimeSeries& series, Address address) {
        const auto& times = series.times;
        const auto first = std::adjacent_find(times.begin(), times.end(), is_wrong);
        if (first == times.end()) {
            return;
        }
        std::ptrdiff_t places = 0;
        for (auto time = first; time + 1 != times.end(); ++time) {
            places += is_wrong(*time, *(time + 1)) ? 1 : 0;
        }
        address.column = "time";
        address.numbers[2] = first - times.begin() + 2;
        report(address,
               "time " + real_in_words(*(first + 1)) + " follows " + real_in_words(*first) +
                   more(places - 1, "in this series"),
               {});
    });
}

void find_paths_to_themselves(const MeantModel& meant, const ReportMeaning& report)
{
    for_each_path(meant.model, [&](const auto& path, const Address& address) {
        if (path.first_segment == path.second_segment) {
            report(address,
                   path.first_segment == 0 ? "leads from the world outside to the world outside"
                                           : "leads from segment " + std::to_string(path.first_segment) + " to itself",
                   {});
        }
    });
}

void find_times_that_go_back(const MeantModel& meant, const ReportMeaning& report)
{
    look_at_times(meant.model, report, [](float before, float after) { return after < before; });
}

void find_times_that_repeat(const MeantModel& meant, const ReportMeaning& report)
{
    look_at_times(meant.model, report, [](float before, float after) { return after == before; });
}

void find_fractions_outside(const MeantModel& meant, const ReportMeaning& report)
{
    for_each_real(meant.model, Rule::fraction, [&](float value, const Address& address) {
        if (value < 0 || value > 1) {
            report(address, real_in_words(value) + " is outside 0 to 1", {});
        }
    });
}

void find_negative_values(const MeantModel& meant, const ReportMeaning& report)
{
    for_each_real(meant.model, Rule::not_negative, [&](float value, const Address& address) {
        if (value < 0) {
            report(address, real_in_words(value) + " is negative", {});
        }
    });
}

void compare_time_steps(const MeantModel& meant, const ReportMeaning& report)
{
    const Model& model = meant.model;
    if (model.minimum_time_step > model.maximum_time_step) {
        report({"model", "minimum_time_step", {1}},
               real_in_words(model.minimum_time_step) + " is above the maximum time step, " +
                   real_in_words(model.maximum_time_step),
               {});
    }
}

void find_missing_flow_fields(const MeantModel& meant, const ReportMeaning& report)
{
    const auto fields = static_cast<std::int64_t>(meant.model.flow_fields.size());
    for_each_numbered(meant.model.systems, [&](const System& system, std::int64_t number) {
        if (system.solids_transport_field < 0 || system.solids_transport_field > fields) {
            report({"system", "solids_transport_field", {number}},
                   std::to_string(system.solids_transport_field) + " is not one of the " + std::to_string(fields) +
                       " flow fields",
                   {});
        }
    });
}

/// Goes down from each segment until a segment where it was before.
void find_bottom_circles(const MeantModel& meant, const ReportMeaning& report)
{
    const std::vector<Segment>& segments = meant.model.segments;
    const auto below = [&](std::size_t number) {
        const std::int32_t bottom = segments[number - 1].bottom_segment;
        return bottom < 1 || static_cast<std::size_t>(bottom) > segments.size() ? 0 : static_cast<std::size_t>(bottom);
    };
    std::vector<std::size_t> visitor(segments.size() + 1); ///< of each segment, from where it was come by first
    for (std::size_t start = 1; start <= segments.size(); ++start) {
        std::size_t number = start;
        for (; number != 0 && visitor[number] == 0; number = below(number)) {
            visitor[number] = start;
        }
        if (number == 0 || visitor[number] != start) {
            continue;
        }
        std::size_t lowest = number;
        std::size_t steps = 1;
        for (std::size_t next = below(number); next != number; next = below(next), ++steps) {
            lowest = std::min(lowest, next);
        }
        report({"segment", "bottom_segment", {static_cast<std::int64_t>(lowest)}},
               "segment " + std::to_string(lowest) + " lies below itself, " + std::to_string(steps) + " down", {});
    }
}

void find_empty_series(const MeantModel& meant, const ReportMeaning& report)
{
    for_each_series(meant.model, [&](const TimeSeries& series, const Address& address) {
        if (series.times.empty()) {
            report(address, "the series has no time pairs", {});
        }
    });
}

/// Of each system the first segment. A maximum of 0 is taken for none.
void find_values_above_the_maximum(const MeantModel& meant, const ReportMeaning& report)
{
    for_each_numbered(meant.model.systems, [&](const System& system, std::int64_t number) {
        const auto is_above = [&](const InitialCondition& condition) {
            return condition.concentration > system.maximum_concentration;
        };
        const auto& conditions = system.initial_conditions;
        const auto first = std::find_if(conditions.begin(), conditions.end(), is_above);
        if (system.maximum_concentration > 0 && first != conditions.end()) {
            report({"initial_condition", "concentration", {number, first - conditions.begin() + 1}},
                   real_in_words(first->concentration) + " is above the system's maximum, " +
                       real_in_words(system.maximum_concentration) +
                       more(std::count_if(first + 1, conditions.end(), is_above), "of its segments"),
                   {});
        }
    });
}

using enum Level;

constexpr std::array rules{
    MeaningRule{{"V202", "path to itself", warning, "name two different segments"}, find_paths_to_themselves},
    MeaningRule{{"V203", "time goes back", error, "put the pairs into the order of their times"},
                find_times_that_go_back},
    MeaningRule{{"V204", "time repeats", warning, "keep one pair for each time, or move one a little"},
                find_times_that_repeat},
    MeaningRule{{"V205", "fraction outside 0 to 1", warning, "give a part of the whole, from 0 to 1"},
                find_fractions_outside},
    MeaningRule{{"V206", "negative value", warning, "give a value of 0 or more"}, find_negative_values},
    MeaningRule{{"V207", "time steps", warning, "let the minimum be at most the maximum"}, compare_time_steps},
    MeaningRule{{"V208", "missing flow field", warning, "name a flow field of the model"}, find_missing_flow_fields},
    MeaningRule{{"V209", "bottom segments in a circle", error, "let the segments below each other end in 0"},
                find_bottom_circles},
    MeaningRule{{"V210", "no time pairs", warning, "give the series at least one pair, or remove it"},
                find_empty_series},
    MeaningRule{{"V211", "above the maximum", warning, "raise the system's maximum concentration, or lower the value"},
                find_values_above_the_maximum},
};

} // namespace

std::span<const MeaningRule> value_rules()
{
    return rules;
}

} // namespace velm
