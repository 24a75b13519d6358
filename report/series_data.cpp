#include "report/drawn_series.hpp"
#include "report/parts.hpp"
#include "water_balance/series_list.hpp"
#include "water_balance/volumes.hpp"

#include <algorithm>
#include <map>
#include <tuple>

namespace velm {
namespace {

/// All series of the page together draw at most so many pairs: 8 MB of numbers.
constexpr std::size_t drawn_pairs = 1'000'000;
/// Volumes of the segments are drawn in models of at most so many.
constexpr std::size_t segments_with_volumes = 200;
constexpr std::size_t most_pairs_of_a_volume = 400;

/// The table of a series' pairs and the numbers of its item.
using SeriesPlace = std::tuple<std::string_view, std::int64_t, std::int64_t>;

SeriesPlace place_of(const Address& item)
{
    return {table_of_values(item.table), item.numbers[0], item.numbers[1]};
}

SeriesPlace place_of(const SeriesItem& item)
{
    return {item.table, item.owner, item.number};
}

/// What the model calls a series, ISO 8859-1.
std::string name_of(const SeriesItem& item, const Model& model)
{
    if (item.segment == 0) {
        return std::string(item.description) + (item.used ? "" : " (not used)");
    }
    const bool boundary = item.table == "boundary_value";
    return model.systems.at(static_cast<std::size_t>(item.owner) - 1).name +
           (boundary ? ", boundary at segment " : ", load into segment ") + std::to_string(item.segment);
}

void put_drawn(PageData& data, const DrawnSeries& drawn, double factor)
{
    data.put_count("kept", drawn.times.size());
    data.put_numbers("times", drawn.times);
    data.put_numbers("values", drawn.values);
    data.put("factor", factor);
}

void put_one(PageData& data, const SeriesItem& item, const std::string& name, const SeriesItem* old,
             std::size_t most_pairs)
{
    const SeriesFacts facts = facts_of(*item.series);
    const DrawnSeries drawn = drawn_series(*item.series, facts, most_pairs);
    data.begin_object();
    data.put_utf8("table", item.table);
    data.begin_array("key");
    data.put_count({}, item.owner);
    data.put_count({}, item.number);
    data.end_array();
    data.put_latin1("name", name);
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
    SeriesItem item;
    item.table = "volume";
    item.unit = "m3";
    for (const Segment& segment : balance.model().segments) {
        const std::vector<double> course = volume_course(balance, ++item.owner);
        const TimeSeries series{times, {course.begin(), course.end()}};
        item.series = &series;
        put_one(data, item, segment.name.empty() ? "" : segment.name + ", volume", nullptr, most_pairs_of_a_volume);
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
        for (const SeriesItem& item : all_series(*report.old_model)) {
            old_items.emplace(place_of(item), item);
        }
    }
    const std::vector<SeriesItem> items = all_series(*report.model);
    std::vector<std::size_t> pairs(items.size());
    std::transform(items.begin(), items.end(), pairs.begin(),
                   [](const SeriesItem& item) { return item.series->times.size(); });
    const std::size_t most_pairs = most_pairs_of_one(pairs, changed.empty() ? drawn_pairs : drawn_pairs / 2);
    data.begin_array("series");
    for (const SeriesItem& item : items) {
        const auto place = changed.find(place_of(item));
        const auto old = place == changed.end() ? old_items.end() : old_items.find(place->second);
        put_one(data, item, name_of(item, *report.model), old == old_items.end() ? nullptr : &old->second, most_pairs);
    }
    if (balance != nullptr && report.model->segments.size() <= segments_with_volumes) {
        put_volumes(data, *balance);
    }
    data.end_array();
}

} // namespace velm
