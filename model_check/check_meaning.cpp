#include "model_check/check_meaning.hpp"

#include "model/real_in_words.hpp"

#include <algorithm>
#include <string_view>
#include <vector>

namespace velm {

namespace {

constexpr std::size_t most_pairs_shown = 99'999; // in the five columns of their count

/// What a series as a whole is found by.
Address column_of_owner(std::string_view owner, RowNumbers key)
{
    return {owner, owner.ends_with("function") ? "description" : "segment", key};
}

std::int32_t number(std::size_t place)
{
    return static_cast<std::int32_t>(place + 1);
}

std::string more(std::ptrdiff_t others, const char* where)
{
    return others == 0 ? "" : ", and " + std::to_string(others) + " more " + where;
}

/// Calls check(item, its number) for each item of a list.
template <class Items, class Check>
void for_each_numbered(const Items& items, Check check)
{
    for (std::size_t place = 0; place < items.size(); ++place) {
        check(items[place], number(place));
    }
}

class MeaningCheck {
public:
    MeaningCheck(const Model& checked, const ReportValue& found) : model_(checked), report_(found) {}

    void run()
    {
        check_times_of_run();
        check_segments();
        check_flows();
        check_exchanges();
        check_systems();
        check_instances();
    }

private:
    void check_times_of_run()
    {
        const Address minimum{"model", "minimum_time_step", {1}};
        not_negative(model_.minimum_time_step, minimum);
        not_negative(model_.maximum_time_step, {"model", "maximum_time_step", {1}});
        not_negative(model_.print_interval, {"model", "print_interval", {1}});
        not_negative(model_.bed_compaction_time_step, {"model", "bed_compaction_time_step", {1}});
        if (model_.minimum_time_step > model_.maximum_time_step) {
            report_(FindingKind::time_steps, minimum,
                    real_in_words(model_.minimum_time_step) + " is above the maximum time step, " +
                        real_in_words(model_.maximum_time_step));
        }
    }

    void check_segments()
    {
        for_each_numbered(model_.segments, [this](const Segment& segment, std::int32_t number) {
            const Address bottom{"segment", "bottom_segment", {number}};
            if (segment_or_none(segment.bottom_segment, bottom)) {
                check_bottom(number, bottom);
            }
            for (const auto& [column, value] : {std::pair{"volume", segment.volume},
                                                {"length", segment.length},
                                                {"width", segment.width},
                                                {"roughness", segment.roughness},
                                                {"minimum_depth", segment.minimum_depth},
                                                {"initial_depth", segment.initial_depth},
                                                {"weir_height", segment.weir_height}}) {
                not_negative(value, {"segment", column, {number}});
            }
        });
    }

    /// Reports a circle once, at its lowest segment.
    void check_bottom(std::int32_t start, const Address& address)
    {
        std::int32_t below = start;
        for (std::size_t steps = 0; steps < model_.segments.size(); ++steps) {
            below = model_.segments[static_cast<std::size_t>(below - 1)].bottom_segment;
            if (below < start || below > number(model_.segments.size() - 1)) { // 0, or a segment that tells itself
                return;
            }
            if (below == start) {
                report_(FindingKind::bottom_circle, address,
                        "segment " + std::to_string(start) + " lies below itself, " + std::to_string(steps + 1) +
                            " down");
                return;
            }
        }
    }

    void check_flows()
    {
        for_each_numbered(model_.flow_fields, [this](const FlowField& field, std::int32_t f) {
            for_each_numbered(field.functions, [&](const FlowFunction& function, std::int32_t q) {
                for_each_numbered(function.paths, [&](const FlowPath& path, std::int32_t p) {
                    check_ends(path, "flow_path", {f, q, p});
                    fraction(path.fraction, {"flow_path", "fraction", {f, q, p}});
                });
                check_series(function.series, "flow_function", "flow_value", {f, q});
            });
        });
    }

    void check_exchanges()
    {
        for_each_numbered(model_.exchange_fields, [this](const ExchangeField& field, std::int32_t f) {
            for_each_numbered(field.functions, [&](const ExchangeFunction& function, std::int32_t x) {
                for_each_numbered(function.pairs, [&](const ExchangePair& pair, std::int32_t p) {
                    check_ends(pair, "exchange_pair", {f, x, p});
                    not_negative(pair.area, {"exchange_pair", "area", {f, x, p}});
                    not_negative(pair.length, {"exchange_pair", "length", {f, x, p}});
                });
                check_series(function.series, "exchange_function", "exchange_value", {f, x});
            });
        });
    }

    void check_systems()
    {
        for_each_numbered(model_.systems, [this](const System& system, std::int32_t s) {
            check_entries(system.boundaries, "boundary", "boundary_value", s);
            check_entries(system.loads, "load", "load_value", s);
            not_negative(system.solids_density, {"system", "solids_density", {s}});
            not_negative(system.maximum_concentration, {"system", "maximum_concentration", {s}});
            if (system.solids_transport_field < 0 ||
                static_cast<std::size_t>(system.solids_transport_field) > model_.flow_fields.size()) {
                report_(FindingKind::missing_flow_field, {"system", "solids_transport_field", {s}},
                        std::to_string(system.solids_transport_field) + " is not one of the " +
                            std::to_string(model_.flow_fields.size()) + " flow fields");
            }
            for_each_numbered(system.initial_conditions, [&](const InitialCondition& condition, std::int32_t segment) {
                fraction(condition.dissolved_fraction, {"initial_condition", "dissolved_fraction", {s, segment}});
            });
            check_maximum(system, s);
        });
    }

    /// Reports the first segment. A maximum of 0 is taken for none.
    void check_maximum(const System& system, std::int32_t s)
    {
        const auto is_above = [&](const InitialCondition& condition) {
            return condition.concentration > system.maximum_concentration;
        };
        const auto& conditions = system.initial_conditions;
        const auto first = std::find_if(conditions.begin(), conditions.end(), is_above);
        if (system.maximum_concentration <= 0 || first == conditions.end()) {
            return;
        }
        report_(
            FindingKind::above_maximum,
            {"initial_condition", "concentration", {s, number(static_cast<std::size_t>(first - conditions.begin()))}},
            real_in_words(first->concentration) + " is above the system's maximum, " +
                real_in_words(system.maximum_concentration) +
                more(std::count_if(first + 1, conditions.end(), is_above), "of its segments"));
    }

    void check_entries(const SegmentSeriesSet& set, std::string_view owner, std::string_view table, std::int32_t s)
    {
        for_each_numbered(set.items, [&](const SegmentSeries& item, std::int32_t entry) {
            if (item.segment == 0) {
                report_missing(item.segment, {owner, "segment", {s, entry}});
            } else {
                segment_or_none(item.segment, {owner, "segment", {s, entry}});
            }
            check_series(item.series, owner, table, {s, entry});
        });
    }

    void check_instances()
    {
        for_each_numbered(model_.time_function_types, [this](const auto& type, std::int32_t t) {
            for_each_numbered(type.instances, [&](const TimeFunction& function, std::int32_t i) {
                if (function.used) {
                    check_series(function.series, "time_function", "time_function_value", {t, i});
                }
            });
        });
    }

    template <class Ends>
    void check_ends(const Ends& ends, std::string_view table, RowNumbers key)
    {
        segment_or_none(ends.first_segment, {table, "first_segment", key});
        segment_or_none(ends.second_segment, {table, "second_segment", key});
        if (ends.first_segment == ends.second_segment) {
            report_(FindingKind::path_to_itself, {table, "second_segment", key},
                    ends.first_segment == 0
                        ? "leads from the world outside to the world outside"
                        : "leads from segment " + std::to_string(ends.first_segment) + " to itself");
        }
    }

    /// `key` is that of the series' owner, a row of `owner`.
    void check_series(const TimeSeries& series, std::string_view owner, std::string_view table, RowNumbers key)
    {
        if (series.times.empty()) {
            report_(FindingKind::no_time_pairs, column_of_owner(owner, key), "the series has no time pairs");
        }
        if (series.times.size() > most_pairs_shown) {
            report_(FindingKind::field_overflow, column_of_owner(owner, key),
                    "the number of its time pairs, " + std::to_string(series.times.size()) +
                        ", does not fit the five columns of its field");
        }
        report_first(series.times, FindingKind::time_goes_back, table, key,
                     [](float before, float after) { return after < before; });
        report_first(series.times, FindingKind::time_repeats, table, key,
                     [](float before, float after) { return after == before; });
    }

    template <class Predicate>
    void report_first(const std::vector<float>& times, FindingKind kind, std::string_view table, RowNumbers key,
                      Predicate is_wrong)
    {
        const auto first = std::adjacent_find(times.begin(), times.end(), is_wrong);
        if (first == times.end()) {
            return;
        }
        std::ptrdiff_t places = 0;
        for (auto time = first; time + 1 != times.end(); ++time) {
            places += is_wrong(*time, *(time + 1)) ? 1 : 0;
        }
        key[2] = number(static_cast<std::size_t>(first - times.begin()) + 1);
        report_(kind, {table, "time", key},
                "time " + real_in_words(*(first + 1)) + " follows " + real_in_words(*first) +
                    more(places - 1, "in this series"));
    }

    /// True when the segment exists. 0 names none.
    bool segment_or_none(std::int32_t segment, const Address& address)
    {
        if (segment < 0 || static_cast<std::size_t>(segment) > model_.segments.size()) {
            report_missing(segment, address);
            return false;
        }
        return segment != 0;
    }

    void report_missing(std::int32_t segment, const Address& address)
    {
        report_(FindingKind::missing_segment, address,
                std::to_string(segment) + " is not one of the " + std::to_string(model_.segments.size()) + " segments");
    }

    void fraction(float value, const Address& address)
    {
        if (value < 0 || value > 1) {
            report_(FindingKind::fraction, address, real_in_words(value) + " is outside 0 to 1");
        }
    }

    void not_negative(float value, const Address& address)
    {
        if (value < 0) {
            report_(FindingKind::negative, address, real_in_words(value) + " is negative");
        }
    }

    const Model& model_;
    const ReportValue& report_;
};

} // namespace

void check_meaning(const Model& model, const ReportValue& report)
{
    MeaningCheck(model, report).run();
}

} // namespace velm
