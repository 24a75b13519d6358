#include "model/items.hpp"
#include "model_store/latin1.hpp"
#include "tool/commands/model_info.hpp"
#include "water_balance/connections.hpp"
#include "water_balance/series_facts.hpp"
#include "water_balance/series_list.hpp"
#include "water_balance/stays.hpp"

#include <cstdint>
#include <string>
#include <utility>

namespace velm {
namespace {

/// The day, and its date where the start has one.
void put_day(JsonText& json, const ModelInfo& info, const std::string& name, double day)
{
    json.put(name + "_day", day);
    json.put_if_any(name + "_date", info.dates.date(day));
}

void put_run(JsonText& json, const ModelInfo& info)
{
    const Model& model = info.model();
    json.begin_object("run");
    json.put_if_any("start_date", info.dates.date(0));
    put_day(json, info, "end", model.julian_end_time);
    for (const auto& [member, days] : {std::pair{"minimum_time_step", model.minimum_time_step},
                                       {"maximum_time_step", model.maximum_time_step},
                                       {"print_interval", model.print_interval}}) {
        json.put(member, days);
    }
    json.end_object();
}

void put_systems(JsonText& json, const Model& model)
{
    std::int64_t number = 0;
    json.put_objects("systems", model.systems, [&](const System& system) {
        json.put("number", ++number);
        json.put("name", utf8_from_latin1(system.name));
        json.put("tag", utf8_from_latin1(system.tag));
        json.put("boundaries", system.boundaries.items.size());
        json.put("loads", system.loads.items.size());
    });
}

void put_series(JsonText& json, const ModelInfo& info, const SeriesItem& item)
{
    const SeriesFacts facts = facts_of(*item.series, item.factor);
    json.put("table", item.table);
    json.put("owner", item.owner);
    json.put("number", item.number);
    if (item.segment != 0) {
        json.put("segment", std::int64_t{item.segment});
    }
    json.put_if_any("description", utf8_from_latin1(item.description));
    json.put("used", item.used ? 1 : 0);
    json.put("pairs", facts.pairs);
    if (facts.pairs > 0) {
        put_day(json, info, "first", facts.first_day);
        put_day(json, info, "last", facts.last_day);
        json.put("usual_step", facts.usual_step);
        json.put("gaps", facts.gaps);
        if (facts.gaps > 0) {
            put_day(json, info, "longest_gap_from", facts.longest_gap.from);
            put_day(json, info, "longest_gap_to", facts.longest_gap.to);
        }
        json.put("least", facts.least);
        json.put("mean", facts.mean);
        json.put("greatest", facts.greatest);
        json.put_if_any("unit", item.unit);
    }
}

void put_segments(JsonText& json, const ModelInfo& info)
{
    const auto connections = connections_of(info.model());
    const std::vector<Stay> stay = stays(info.water);
    std::int32_t number = 0;
    json.put_objects("segments", info.model().segments, [&](const Segment& segment) {
        const auto place = static_cast<std::size_t>(number);
        const MeanFlow mean = info.water.mean_flow(++number);
        json.put("number", number);
        json.put("name", utf8_from_latin1(segment.name));
        json.put("type", std::int64_t{segment.type});
        json.put("volume", info.water.start_volume(number));
        if (!info.elsewhere) {
            json.put("mean_inflow", mean.in);
            json.put("mean_outflow", mean.out);
            json.put("residence_time", stay[place].mean);
            json.put("shortest_residence_time", stay[place].shortest);
            put_day(json, info, "highest_outflow", stay[place].shortest_day);
        }
        json.put_objects("connections", connections[place], [&](const Connection& one) {
            json.put("segment", one.segment);
            json.put("by", one.exchange ? "exchange" : "flow");
            json.put("field", one.field);
        });
    });
}

} // namespace

void put_info(JsonText& json, const ModelInfo& info)
{
    json.begin_object();
    json.put("file", info.file);
    json.put("kind", info.database ? "model database" : "input file");
    json.put("errors", info.errors);
    put_run(json, info);
    put_systems(json, info.model());
    json.begin_object("water");
    if (info.elsewhere) {
        json.put("hydrodynamic_file", utf8_from_latin1(info.model().hydrodynamic_file));
    } else {
        json.put("in", info.water.totals().in);
        json.put("out", info.water.totals().out);
        json.put("stored", info.water.totals().stored);
    }
    json.end_object();
    json.put_objects("series", all_series(info.model()), [&](const SeriesItem& item) { put_series(json, info, item); });
    put_segments(json, info);
    json.end_object();
}

} // namespace velm
