#include "model_check/rules.hpp"

#include "tests/support/river.hpp"

#include <gtest/gtest.h>

namespace velm {
namespace {

struct Case {
    const char* what;
    std::function<void(Model&)> change;
    const char* found; ///< a line each: code, place, message
};

std::string findings_of(const Model& model)
{
    std::string lines;
    const WaterBalance water(model);
    const RunDates dates(model);
    for (const MeaningRule& meaning : value_rules()) {
        meaning.look({model, water, dates},
                     [&](const Address& address, const std::string& message, const std::string&) {
                         lines += std::string(meaning.rule.code) + ' ' + std::string(address.table) + ", " +
                                  field_in_words({.address = address}) + ": " + message + '\n';
                     });
    }
    return lines;
}

std::vector<Case> cases()
{
    return {
        {"nothing", [](Model&) {}, ""},
        {"an exchange from nowhere to nowhere", [](Model& m) { m.exchange_fields[0].functions[0].pairs[0] = {}; },
         "V202 exchange_pair, exchange field 1, exchange function 1, exchange pair 1, second segment: leads from the "
         "world outside to the world outside\n"},
        {"a path to itself", [](Model& m) { m.flow_fields[0].functions[1].paths[0].first_segment = 2; },
         "V202 flow_path, flow field 1, flow function 2, flow path 1, second segment: leads from segment 2 to "
         "itself\n"},
        {"times back and again",
         [](Model& m) {
             m.systems[0].loads.items[0].series.times = {1, 0, 0, -1};
         },
         "V203 load_value, system 1, load 1, pair 2, time: time 0 follows 1, and 1 more in this series\n"
         "V204 load_value, system 1, load 1, pair 3, time: time 0 follows 0\n"},
        {"times of an unused function",
         [](Model& m) {
             m.time_function_types[0].instances[0].series = {{1, 0}, {0, 0}};
         },
         ""},
        {"parts of a flow beyond the whole",
         [](Model& m) {
             m.flow_fields[0].functions[0].paths[0].fraction = 1.5F;
             m.flow_fields[0].functions[0].paths[1].fraction = -0.5F;
         },
         "V205 flow_path, flow field 1, flow function 1, flow path 1, fraction: 1.5 is outside 0 to 1\n"
         "V205 flow_path, flow field 1, flow function 1, flow path 2, fraction: -0.5 is outside 0 to 1\n"},
        {"a dissolved fraction", [](Model& m) { m.systems[1].initial_conditions[2].dissolved_fraction = 2; },
         "V205 initial_condition, system 2, segment 3, dissolved fraction: 2 is outside 0 to 1\n"},
        {"negative sizes; elevations may be negative",
         [](Model& m) {
             m.segments[0].volume = m.julian_end_time = -5;
             m.segments[0].bottom_elevation = -5;
             m.exchange_fields[0].functions[0].pairs[0].area = -1e-20F;
         },
         "V206 model, julian end time: -5 is negative\n"
         "V206 segment, segment 1, volume: -5 is negative\n"
         "V206 exchange_pair, exchange field 1, exchange function 1, exchange pair 1, area: -1e-20 is negative\n"},
        {"time steps", [](Model& m) { m.minimum_time_step = 1.5F; },
         "V207 model, minimum time step: 1.5 is above the maximum time step, 1\n"},
        {"solids fields",
         [](Model& m) { m.systems[0].solids_transport_field = 2, m.systems[1].solids_transport_field = 1; },
         "V208 system, system 1, solids transport field: 2 is not one of the 1 flow fields\n"},
        {"a circle is told once", [](Model& m) { m.segments[2].bottom_segment = 2, m.segments[1].bottom_segment = 1; },
         "V209 segment, segment 1, bottom segment: segment 1 lies below itself, 3 down\n"},
        {"a way into a circle", [](Model& m) { m.segments[1].bottom_segment = 3, m.segments[2].bottom_segment = 2; },
         "V209 segment, segment 2, bottom segment: segment 2 lies below itself, 2 down\n"},
        {"an empty series", [](Model& m) { m.time_function_types[0].instances[1].series = {}; },
         "V210 time_function_value, time function type 1, time function 2: the series has no time pairs\n"},
        {"above the maximum", [](Model& m) { m.systems[0].maximum_concentration = 7.5F; },
         "V211 initial_condition, system 1, segment 1, concentration: 8 is above the system's maximum, 7.5, and 2 more "
         "of its segments\n"},
        {"no maximum", [](Model& m) { m.systems[0].maximum_concentration = 0; }, ""},
    };
}

TEST(Meaning, OfEachValue)
{
    for (const Case& one : cases()) {
        Model model = river();
        one.change(model);
        EXPECT_EQ(findings_of(model), one.found) << one.what;
    }
}

} // namespace
} // namespace velm
