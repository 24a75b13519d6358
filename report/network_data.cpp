#include "model/tables.hpp"
#include "model/words.hpp"
#include "report/parts.hpp"
#include "water_balance/flow_course.hpp"
#include "water_balance/stays.hpp"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <type_traits>

namespace velm {
namespace {

/// A datum that every segment has.
void put_datum(PageData& data, std::string_view group, std::string_view name, std::string_view unit, const auto& number,
               std::size_t segments)
{
    data.begin_object();
    data.put_utf8("group", group);
    data.put_latin1("name", name);
    data.put_utf8("unit", unit);
    data.put_numbers("values", segments, number);
    data.end_object();
}

void put_water_data(PageData& data, const Model& model, const WaterBalance* balance)
{
    const std::size_t segments = model.segments.size();
    const auto factor = double{model.volume_scale_factor} * double{model.volume_conversion_factor};
    put_datum(
        data, "water", "volume", "m3", [&](std::size_t i) { return model.segments[i].volume * factor; }, segments);
    if (balance == nullptr) {
        return;
    }
    const auto number = [](std::size_t i) { return static_cast<std::int32_t>(i + 1); };
    const std::vector<Stay> stay = stays(*balance);
    put_datum(
        data, "water", "mean flow in", "m3/s", [&](auto i) { return balance->mean_flow(number(i)).in; }, segments);
    put_datum(
        data, "water", "mean flow out", "m3/s", [&](auto i) { return balance->mean_flow(number(i)).out; }, segments);
    put_datum(
        data, "water", "residence time", "days", [&](auto i) { return stay[i].mean; }, segments);
    put_datum(
        data, "water", "residence time at the highest flow", "days", [&](auto i) { return stay[i].shortest; },
        segments);
}

void put_shape_data(PageData& data, const Model& model)
{
    for (const auto& column : tables::segment.columns) {
        const bool stored_volume = column.name == "volume"; // in the modeller's unit
        const auto number = [&](std::size_t i) {
            double found = 0;
            with_value(column, model.segments[i], [&](const auto& value) {
                if constexpr (std::is_arithmetic_v<std::remove_cvref_t<decltype(value)>>) {
                    found = static_cast<double>(value);
                }
            });
            return found;
        };
        if (column.length == 0 && column.name != "type" && column.name != "bottom_segment") {
            put_datum(data, "shape", stored_volume ? "volume as stored" : name_in_words(column.name),
                      stored_volume ? "" : column.unit, number, model.segments.size());
        }
    }
}

/// What an input file that ends too early lacks is no number.
void put_start_and_parameters(PageData& data, const Model& model)
{
    constexpr double missing = std::numeric_limits<double>::quiet_NaN();
    const std::size_t segments = model.segments.size();
    for (const char* const group : {"concentration at the start", "dissolved fraction at the start"}) {
        const bool held = std::string_view(group).starts_with("c");
        for (const System& system : model.systems) {
            const auto& conditions = system.initial_conditions;
            const auto number = [&](std::size_t i) -> double {
                return i >= conditions.size() ? missing
                       : held                 ? conditions[i].concentration
                                              : conditions[i].dissolved_fraction;
            };
            put_datum(data, group, system.name, held ? "mg/L" : "", number, segments);
        }
    }
    for (const auto& type : model.parameter_types) {
        for (const Parameter& parameter : type.instances) {
            const std::string name =
                parameter.description.empty() ? "ISC " + std::to_string(type.isc) : parameter.description;
            put_datum(
                data, "parameters", parameter.used ? name : name + " (not used)", "",
                [&](auto i) { return i < parameter.values.size() ? double{parameter.values[i]} : missing; }, segments);
        }
    }
}

/// `course` is null when the flows are elsewhere.
void put_function_paths(PageData& data, const std::vector<FlowPath>& paths, const FlowCourse* course)
{
    const double mean = course == nullptr ? 0 : course->mean_forward() - course->mean_backward();
    const bool turns = course != nullptr && course->greatest() > 0 && course->least() < 0;
    data.begin_object("paths");
    data.put_count("count", paths.size());
    data.put_numbers("first", paths.size(), [&](auto i) { return paths[i].first_segment; });
    data.put_numbers("second", paths.size(), [&](auto i) { return paths[i].second_segment; });
    data.put_numbers("fraction", paths.size(), [&](auto i) { return paths[i].fraction; });
    data.put_numbers("flow", paths.size(), [&](auto i) { return double{paths[i].fraction} * mean; });
    data.put_numbers("turns", paths.size(), [&](auto) { return turns ? 1 : 0; });
    data.end_object();
}

void put_pairs(PageData& data, const std::vector<ExchangePair>& pairs)
{
    data.begin_object("pairs");
    data.put_count("count", pairs.size());
    data.put_numbers("first", pairs.size(), [&](auto i) { return pairs[i].first_segment; });
    data.put_numbers("second", pairs.size(), [&](auto i) { return pairs[i].second_segment; });
    data.put_numbers("area", pairs.size(), [&](auto i) { return pairs[i].area; });
    data.put_numbers("length", pairs.size(), [&](auto i) { return pairs[i].length; });
    data.end_object();
}

void put_places(PageData& data, const std::vector<SegmentPlace>& places)
{
    if (places.empty()) {
        return;
    }
    data.begin_object("places");
    data.put_count("count", places.size());
    data.put_numbers("segments", places.size(), [&](auto i) { return places[i].segment; });
    // from the first, whose coordinates may be as large as those of a survey
    data.put_numbers("x", places.size(), [&](auto i) { return places[i].x - places.front().x; });
    data.put_numbers("y", places.size(), [&](auto i) { return places[i].y - places.front().y; });
    data.end_object();
}

/// Where boundaries or loads stand, by system.
void put_contacts(PageData& data, std::string_view member, const Model& model, SegmentSeriesSet System::*set)
{
    data.put_objects(member, model.systems, [&](const System& system) {
        const auto& items = (system.*set).items;
        data.put_count("count", items.size());
        data.put_numbers("segments", items.size(), [&](auto i) { return items[i].segment; });
    });
}

} // namespace

std::string flow_field_name(std::size_t number)
{
    constexpr std::array<std::string_view, 6> names{"surface water", "pore water", "solids 1",
                                                    "solids 2",      "solids 3",   "evaporation and precipitation"};
    return number <= names.size() ? std::string(names.at(number - 1)) : "flow field " + std::to_string(number);
}

std::string exchange_field_name(std::size_t number)
{
    return number == 1 ? "surface water" : number == 2 ? "pore water" : "exchange field " + std::to_string(number);
}

void put_segments(PageData& data, const Report& report, const WaterBalance* balance)
{
    const Model& model = *report.model;
    const std::vector<Segment>& segments = model.segments;
    data.begin_object("segments");
    data.put_count("count", segments.size());
    data.put_array("names", segments, [&](const Segment& segment) { data.put_latin1({}, segment.name); });
    data.put_numbers("types", segments.size(), [&](auto i) { return segments[i].type; });
    data.put_numbers("bottoms", segments.size(), [&](auto i) { return segments[i].bottom_segment; });
    put_places(data, report.places);
    data.begin_array("data");
    if (!segments.empty()) {
        put_water_data(data, model, balance);
        put_shape_data(data, model);
        put_start_and_parameters(data, model);
    }
    data.end_array();
    data.end_object();
}

void put_paths(PageData& data, const Model& model, const WaterBalance* balance)
{
    std::size_t at = 0; // in the balance
    std::size_t f = 0;  // from 1
    data.put_objects("flow_fields", model.flow_fields, [&](const FlowField& field) {
        const double factor = double{field.scale_factor} * double{field.conversion_factor};
        data.put_utf8("name", flow_field_name(++f));
        data.put_objects("functions", field.functions, [&](const FlowFunction& function) {
            data.put_latin1("description", function.description);
            const FlowCourse* course = nullptr;
            std::optional<FlowCourse> of_solids; // the balance is of water
            if (balance != nullptr && at < balance->functions().size() &&
                static_cast<std::size_t>(balance->functions()[at].field) == f) {
                course = &balance->functions()[at++].course;
            } else if (balance != nullptr) {
                course = &of_solids.emplace(function.series, factor, std::max(double{model.julian_end_time}, 0.0));
            }
            put_function_paths(data, function.paths, course);
        });
    });
    f = 0;
    data.put_objects("exchange_fields", model.exchange_fields, [&](const ExchangeField& field) {
        data.put_utf8("name", exchange_field_name(++f));
        data.put_objects("functions", field.functions, [&](const ExchangeFunction& function) {
            data.put_latin1("description", function.description);
            put_pairs(data, function.pairs);
        });
    });
    put_contacts(data, "boundaries", model, &System::boundaries);
    put_contacts(data, "loads", model, &System::loads);
    data.put_array("systems", model.systems, [&](const System& system) { data.put_latin1({}, system.name); });
}

} // namespace velm
