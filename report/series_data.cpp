#include "report/drawn_series.hpp"
#include "report/parts.hpp"
#include "water_balance/volumes.hpp"

#include <functional>
#include <map>

namespace velm {
namespace {

/// All series of the page together draw at most so many pairs: 8 MB of numbers.
constexpr std::size_t drawn_pairs = 1'000'000;
/// Volumes of the segments are drawn in models of at most so many.
constexpr std::size_t segments_with_volumes = 200;
constexpr std::size_t most_pairs_of_a_volume = 400;

struct SeriesItem {
    std::string_view table;
    std::array<std::size_t, 2> key{};
    std::string name; ///< as the model says it, ISO 8859-1
    std::string unit;
    double factor = 1;
    const TimeSeries* series = nullptr;
};

/// The table of a series' pairs and the numbers of its item.
using SeriesPlace = std::pair<std::string_view, std::array<std::size_t, 2>>;

SeriesPlace place_of(const Address& item)
{
    const auto number = [&](std::size_t key) { return static_cast<std::size_t>(item.numbers.at(key)); };
    return {table_of_values(item.table), {number(0), number(1)}};
}

using Visit = std::function<void(SeriesItem item)>;

template <class Fields>
void visit_fields(std::string_view table, const Fields& fields, const std::string& unit, const Visit& visit)
{
    for (std::size_t f = 0; f < fields.size(); ++f) {
        const double factor = double{fields[f].scale_factor} * double{fields[f].conversion_factor};
        for (std::size_t g = 0; g < fields[f].functions.size(); ++g) {
            const auto& function = fields[f].functions[g];
            visit({table, {f + 1, g + 1}, function.description, unit, factor, &function.series});
        }
    }
}

void visit_set(std::string_view table, const Model& model, SegmentSeriesSet System::*set, std::string_view word,
               const std::string& unit, const Visit& visit)
{
    for (std::size_t s = 0; s < model.systems.size(); ++s) {
        const SegmentSeriesSet& items = model.systems[s].*set;
        const double factor = double{items.scale_factor} * double{items.conversion_factor};
        for (std::size_t i = 0; i < items.items.size(); ++i) {
            const std::string name =
                model.systems[s].name + ", " + std::string(word) + " segment " + std::to_string(items.items[i].segment);
            visit({table, {s + 1, i + 1}, name, unit, factor, &items.items[i].series});
        }
    }
}

void visit_series(const Model& model, const Visit& visit)
{
    visit_fields("flow_value", model.flow_fields, "m3/s", visit);
    visit_fields("exchange_value", model.exchange_fields, "m2/s", visit);
    visit_set("boundary_value", model, &System::boundaries, "boundary at", "mg/L", visit);
    visit_set("load_value", model, &System::loads, "load into", "kg/day", visit);
    for (std::size_t t = 0; t < model.time_function_types.size(); ++t) {
        const auto& instances = model.time_function_types[t].instances;
        for (std::size_t i = 0; i < instances.size(); ++i) {
            visit({"time_function_value",
                   {t + 1, i + 1},
                   instances[i].used ? instances[i].description : instances[i].description + " (not used)",
                   "",
                   1,
                   &instances[i].series});
        }
    }
}

void put_drawn(PageData& data, const DrawnSeries& drawn, double factor)
{
    data.put_count("kept", drawn.times.size());
    data.put_numbers("times", drawn.times);
    data.put_numbers("values", drawn.values);
    data.put("factor", factor);
}

void put_one(PageData& data, const SeriesItem& item, const SeriesItem* old, std::size_t most_pairs)
{
    const SeriesFacts facts = facts_of(*item.series);
    const DrawnSeries drawn = drawn_series(*item.series, facts, most_pairs);
    data.begin_object();
    data.put_utf8("table", item.table);
    data.begin_array("key");
    data.put_count({}, item.key[0]);
    data.put_count({}, item.key[1]);
    data.end_array();
    data.put_latin1("name", item.name);
    data.put_utf8("unit", item.unit);
    data.put_count("pairs", facts.pairs);
    data.put("first", facts.first_day);
    data.put("last", facts.last_day);
    data.put("step", facts.usual_step);
    data.put_count("gaps", facts.gaps);
    data.put("least", facts.least);
    data.put("mean", facts.mean);
    data.put("greatest", facts.greatest);
    data.put("thinned", drawn.thinned);
    put_drawn(data, drawn, item.factor);
    if (old != nullptr) {
        data.begin_object("old");
        put_drawn(data, drawn_series(*old->series, facts_of(*old->series), most_pairs), old->factor);
        data.end_object();
    }
    data.end_object();
}

void put_volumes(PageData& data, const WaterBalance& balance)
{
    const std::vector<float> times(balance.moments().begin(), balance.moments().end());
    for (std::size_t i = 0; i < balance.model().segments.size(); ++i) {
        const std::vector<double> course = volume_course(balance, static_cast<std::int32_t>(i + 1));
        const TimeSeries series{times, {course.begin(), course.end()}};
        put_one(data, {"volume", {i + 1, 0}, balance.model().segments[i].name, "m3", 1, &series}, nullptr,
                most_pairs_of_a_volume);
    }
}

} // namespace

void put_series(PageData& data, const Report& report, const WaterBalance* balance, std::span<const Difference> found)
{
    std::map<SeriesPlace, SeriesPlace> changed; // new place, old place
    for (const Difference& one : found) {
        if (one.change == Change::numbers && !one.numbers.by_segment) {
            changed.emplace(place_of(one.new_place), place_of(one.old_place));
        }
    }
    std::map<SeriesPlace, SeriesItem> old_items;
    if (!changed.empty()) {
        visit_series(*report.old_model, [&](SeriesItem item) {
            old_items.emplace(SeriesPlace{item.table, item.key}, std::move(item));
        });
    }
    std::vector<SeriesItem> items;
    std::vector<std::size_t> pairs;
    visit_series(*report.model, [&](SeriesItem item) {
        pairs.push_back(item.series->times.size());
        items.push_back(std::move(item));
    });
    const std::size_t most_pairs = most_pairs_of_one(pairs, changed.empty() ? drawn_pairs : drawn_pairs / 2);
    data.begin_array("series");
    for (const SeriesItem& item : items) {
        const auto place = changed.find({item.table, item.key});
        const auto old = place == changed.end() ? old_items.end() : old_items.find(place->second);
        put_one(data, item, old == old_items.end() ? nullptr : &old->second, most_pairs);
    }
    if (balance != nullptr && report.model->segments.size() <= segments_with_volumes) {
        put_volumes(data, *balance);
    }
    data.end_array();
}

} // namespace velm
