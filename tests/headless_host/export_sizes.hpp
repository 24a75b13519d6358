#pragma once

#include "model/model.hpp"

#include <cstdint>
#include <functional>
#include <string>

namespace velm {

/// What an export of a model, empty but for what `fill` puts in, asks for beyond the 78 requests of an empty one.
struct ExportSize {
    std::string what;
    std::function<void(Model&)> fill;
    std::uint64_t more_requests;
};

inline constexpr std::uint64_t requests_for_an_empty_model = 78;

inline const ExportSize export_sizes[] = {
    {"nothing", [](Model&) {}, 0},
    // name, boundary count, load count, transport field, density, maximum
    {"a system", [](Model& m) { m.systems.resize(1); }, 6},
    // name and 19 of geometry
    {"a segment", [](Model& m) { m.segments.resize(1); }, 20},
    // concentration and dissolved fraction for each of 6 pairs
    {"2 systems, 3 segments", [](Model& m) { m.systems.resize(2), m.segments.resize(3); }, 2 * 6 + 3 * 20 + 12},
    // function count, asked twice
    {"a flow field", [](Model& m) { m.flow_fields.resize(1); }, 2},
    {"flow option 3 without a flow field", [](Model& m) { m.segments.resize(1), m.segments[0].flow_option = 3; }, 20},
    {"a hydrodynamic file, asked for once",
     [](Model& m) { m.segments.resize(1), m.segments[0].flow_option = 3, m.flow_fields.resize(2); }, 20 + 4 + 1},
    {"flow option 3 of segment 2",
     [](Model& m) { m.segments.resize(2), m.segments[1].flow_option = 3, m.flow_fields.resize(1); }, 40 + 2},
    // factors; path count and description; description and pair count; 3 a path; 1 a pair
    {"a flow function of 2 paths and 5 pairs",
     [](Model& m) {
         m.flow_fields = {{1, 1, {{"", {{}, {}}, {{1, 2, 3, 4, 5}, {1, 2, 3, 4, 5}}}}}};
     },
     2 + 2 + 2 + 2 + 6 + 5},
    {"an exchange field", [](Model& m) { m.exchange_fields.resize(1); }, 1},
    // count and factors; description and two counts; 4 a segment pair; 1 a time pair
    {"an exchange function of 2 segment pairs and 3 time pairs",
     [](Model& m) {
         m.exchange_fields = {{1, 1, {{"", {{}, {}}, {{1, 2, 3}, {1, 2, 3}}}}}};
     },
     1 + 2 + 3 + 8 + 3},
    // factors; segment, pair count and the whole series, however long
    {"2 boundaries, one without pairs",
     [](Model& m) {
         m.systems.resize(1), m.systems[0].boundaries.items = {{1, {{1, 2}, {1, 2}}}, {2, {}}};
     },
     6 + 2 + 6},
    {"a load", [](Model& m) { m.systems.resize(1), m.systems[0].loads.items.resize(1); }, 6 + 2 + 3},
    {"an NPS file", [](Model& m) { m.nps_option = 1; }, 1},
    {"an NPS option below 0", [](Model& m) { m.nps_option = -1; }, 0},
    // in both passes ISC number, count and the use of the first function
    {"a type without time functions",
     [](Model& m) {
         m.time_function_types = {{7, {}}};
     },
     6},
    {"2 unused time functions",
     [](Model& m) {
         m.time_function_types = {{7, {{}, {}}}};
     },
     8},
    {"a time function of 3 pairs and an unused one",
     [](Model& m) {
         m.time_function_types = {{7, {{}, {true, "", {{1, 2, 3}, {1, 2, 3}}}}}};
     },
     8 + 2 + 3},
    {"a used time function without pairs",
     [](Model& m) {
         m.time_function_types = {{7, {{true, "", {}}}}};
     },
     6 + 2},
    {"a type without parameters",
     [](Model& m) {
         m.parameter_types = {{7, {}}};
     },
     4},
    // description and scale; each segment asks the use of both and the value of one
    {"a used and an unused parameter on 3 segments",
     [](Model& m) {
         m.segments.resize(3), m.parameter_types = {{7, {{}, {true, "", 1, {1, 2, 3}}}}};
     },
     3 * 20 + 8 + 2 + 9},
    {"a type without constants",
     [](Model& m) {
         m.constant_types = {{7, {}}};
     },
     4},
    {"a used and an unused constant",
     [](Model& m) {
         m.constant_types = {{7, {{true, "", 1}, {}}}};
     },
     8 + 2},
};

} // namespace velm
