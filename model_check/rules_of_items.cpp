#include "model/items.hpp"
#include "model/words.hpp"
#include "model_check/item_words.hpp"
#include "model_check/rules.hpp"
#include "plain_text/plain_text.hpp"

#include <array>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace velm {

namespace {

void look_for_odd_volumes(const MeantModel& meant, const ReportMeaning& report)
{
    constexpr double most = 3 * (1 + 1e-6); // what single precision makes of three times
    for_each_numbered(meant.model.segments, [&](const Segment& segment, std::int64_t number) {
        const double volume = meant.water.start_volume(static_cast<std::int32_t>(number));
        const double box = double{segment.length} * double{segment.width} * double{segment.initial_depth};
        const bool known = volume > 0 && segment.length > 0 && segment.width > 0 && segment.initial_depth > 0;
        if (known && (volume * most < box || volume > box * most)) {
            report({"segment", "volume", {number}},
                   "segment " + std::to_string(number) + " holds " + in_figures(volume) + " m3, and its length of " +
                       in_figures(segment.length) + " m, width of " + in_figures(segment.width) +
                       " m and initial depth of " + in_figures(segment.initial_depth) + " m make " + in_figures(box) +
                       " m3, " +
                       (volume > box ? in_figures(volume / box) + " times less"
                                     : in_figures(box / volume) + " times more"),
                   "correct the volume, the volumes' factors or the shape");
        }
    });
}

void look_for_nothing(const MeantModel& meant, const ReportMeaning& report)
{
    if (meant.model.segments.empty()) {
        report({"segment", "", {}}, "the model has no segment", "add a segment for each part of the water");
    }
    if (meant.model.systems.empty()) {
        report({"system", "", {}}, "the model has no system", "add a system for each thing that is transported");
    }
}

class ZeroCheck {
public:
    ZeroCheck(const Model& model, const ReportMeaning& report) : model_(model), report_(report) {}

    void run() const
    {
        check_run();
        for_each_numbered(model_.segments, [this](const Segment& segment, std::int64_t number) {
            not_zero(segment.volume, {"segment", "volume", {number}}, "nothing can be dissolved in it",
                     "give the segment's volume");
        });
        check_fields(model_.flow_fields, "flow_field", "nothing flows");
        check_fields(model_.exchange_fields, "exchange_field", "nothing mixes");
        for_each_of<ExchangePair>(model_, [this](const ExchangePair& pair, const RowNumbers& numbers) {
            not_zero(pair.area, {"exchange_pair", "area", numbers}, "nothing mixes through it",
                     "give the cross section through which the two mix, or remove the pair");
            not_zero(pair.length, {"exchange_pair", "length", numbers}, "the engine divides by it",
                     "give the mixing length, most often from middle to middle");
        });
        for_each_numbered(model_.systems, [this](const System& system, std::int64_t number) {
            check_set(system.boundaries, "boundary_scale_factor", "boundary_conversion_factor", number);
            check_set(system.loads, "load_scale_factor", "load_conversion_factor", number);
        });
        for_each_of<Parameter>(model_, [this](const Parameter& parameter, const RowNumbers& numbers) {
            if (parameter.used && !parameter.values.empty()) {
                check_factor(parameter.scale_factor, {"parameter", "scale_factor", numbers},
                             "it makes all its values 0");
            }
        });
    }

private:
    void check_run() const
    {
        for (const auto& [column, value, consequence] :
             {std::tuple<const char*, float, const char*>{"julian_end_time", model_.julian_end_time,
                                                          "the run has no length"},
              {"maximum_time_step", model_.maximum_time_step, "time does not go on"},
              {"print_interval", model_.print_interval, "nothing is put out"}}) {
            not_zero(value, {"model", column, {1}}, consequence, "give it in days");
        }
        if (!model_.segments.empty()) {
            check_factor(model_.volume_scale_factor, {"model", "volume_scale_factor", {1}}, "it makes all volumes 0");
            check_factor(model_.volume_conversion_factor, {"model", "volume_conversion_factor", {1}},
                         "it makes all volumes 0");
        }
    }

    template <class Fields>
    void check_fields(const Fields& fields, std::string_view table, const char* consequence) const
    {
        for_each_numbered(fields, [&](const auto& field, std::int64_t number) {
            if (!field.functions.empty()) {
                check_factor(field.scale_factor, {table, "scale_factor", {number}}, consequence);
                check_factor(field.conversion_factor, {table, "conversion_factor", {number}}, consequence);
            }
        });
    }

    void check_set(const SegmentSeriesSet& set, const char* scale, const char* conversion, std::int64_t number) const
    {
        if (!set.items.empty()) {
            check_factor(set.scale_factor, {"system", scale, {number}}, "it makes all its values 0");
            check_factor(set.conversion_factor, {"system", conversion, {number}}, "it makes all its values 0");
        }
    }

    void check_factor(float value, const Address& address, const char* consequence) const
    {
        not_zero(value, address, consequence, "give a factor, 1 for the values as they are");
    }

    void not_zero(float value, const Address& address, const char* consequence, const char* remedy) const
    {
        if (value == 0) {
            const std::string item = item_in_words(address);
            report_(address,
                    "the " + name_in_words(address.column) + (item.empty() ? "" : " of " + item) +
                        " is 0: " + consequence,
                    remedy);
        }
    }

    const Model& model_;
    const ReportMeaning& report_;
};

void look_for_zeros(const MeantModel& meant, const ReportMeaning& report)
{
    ZeroCheck(meant.model, report).run();
}

std::string in_words(const std::array<std::int32_t, 3>& integers)
{
    return std::to_string(integers[0]) + ' ' + std::to_string(integers[1]) + ' ' + std::to_string(integers[2]);
}

void look_for_no_date(const MeantModel& meant, const ReportMeaning& report)
{
    const Model& model = meant.model;
    if (!date_of(model.start_date)) {
        report({"model", "start_date_1", {1}},
               "the start's date, " + in_words(model.start_date) + ", is none in any order of year, month and day",
               "give year, month and day, in the order that your engine reads");
    }
    if (!time_of_day(model.start_time)) {
        report({"model", "start_time_1", {1}}, "the start's time of day, " + in_words(model.start_time) + ", is none",
               "give hour, minute and second, 0 0 0 for midnight");
    }
}

/// Of items that share a text, each but the first is found.
template <class Item>
void look_for_same(const std::vector<Item>& items, std::string Item::*text, std::string_view table,
                   std::string_view column, const ReportMeaning& report)
{
    std::unordered_map<std::string_view, std::int64_t> first;
    for_each_numbered(items, [&](const Item& item, std::int64_t number) {
        const std::string_view trimmed = without_blanks(item.*text);
        const auto [place, is_new] = first.try_emplace(trimmed, number);
        if (!trimmed.empty() && !is_new) {
            const std::string kind = name_in_words(table);
            report({table, column, {number}},
                   kind + ' ' + std::to_string(number) + " has the " + std::string(column) + " of " + kind + ' ' +
                       std::to_string(place->second) + ", '" + printable_latin1(trimmed) + "'",
                   "give each " + kind + " a " + std::string(column) + " of its own");
        }
    });
}

void look_for_same_names(const MeantModel& meant, const ReportMeaning& report)
{
    look_for_same(meant.model.systems, &System::name, "system", "name", report);
    look_for_same(meant.model.systems, &System::tag, "system", "tag", report);
    look_for_same(meant.model.segments, &Segment::name, "segment", "name", report);
}

using enum Level;

constexpr std::array<MeaningRule, 5> item_rules{{
    {{"V509", "shape and volume", warning, "correct the volume, the volumes' factors or the shape"},
     look_for_odd_volumes},
    {{"V510", "no model", warning, "add segments and systems"}, look_for_nothing},
    {{"V511", "zero", warning, "give a value other than 0"}, look_for_zeros},
    {{"V514", "start is no date", warning, "give a date, and a time of day"}, look_for_no_date},
    {{"V515", "same name", warning, "give each its own name"}, look_for_same_names},
}};

} // namespace

std::span<const MeaningRule> rules_of_items()
{
    return item_rules;
}

} // namespace velm
