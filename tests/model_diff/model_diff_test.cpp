#include "model_diff/model_diff.hpp"

#include "input_file/sections/section_of.hpp"
#include "model_check/datum_value.hpp"
#include "model_diff/report.hpp"
#include "tests/input_file/exported.hpp"
#include "tests/support/river.hpp"

#include <functional>
#include <utility>

#include <gtest/gtest.h>

namespace velm {
namespace {

struct Case {
    const char* what;
    std::function<void(Model&)> change;
    const char* lines;
    const char* summary;
};

std::vector<Case> cases()
{
    return {
        {"nothing", [](Model&) {}, "", ""},
        {"values of the run, which belong to several sections",
         [](Model& m) {
             m.julian_end_time = 12.5F, m.nps_option = 1, m.nps_file = "n\xE9.dat", m.bed_volume_option = 2;
         },
         "system information: julian end time: 5 -> 12.5\n"
         "segments: bed volume option: 0 -> 2\n"
         "loads: nps option: 0 -> 1\n"
         "loads: nps file: '' -> 'n\xC3\xA9.dat'\n",
         "system information: 1 value changed\n"
         "segments: 1 value changed\n"
         "loads: 2 values changed\n"},
        {"segments at the end", [](Model& m) { m.segments.emplace_back(), m.segments[1].volume = 1500; },
         "segments: segment 2, volume: 1000 -> 1500\n"
         "segments: segment 4: added\n",
         "segments: 1 item added, 1 value changed\n"},
        {"a system put in between leaves the others as they are",
         [](Model& m) { m.systems.emplace(m.systems.begin() + 1)->name = "Silt"; },
         "system information: system 2 (Silt): added\n", "system information: 1 item added\n"},
        {"a system that goes", [](Model& m) { m.systems.erase(m.systems.begin()); },
         "system information: system 1 (Nitrate): removed\n", "system information: 1 item removed\n"},
        {"a system that gets another name", [](Model& m) { m.systems[0].name = "NO3"; },
         "system information: system 1 (NO3), name: 'Nitrate' -> 'NO3'\n", "system information: 1 value changed\n"},
        {"systems that change places", [](Model& m) { std::swap(m.systems[0], m.systems[1]); },
         "system information: system 1 (Oxygen), number: 2 -> 1\n", "system information: 1 value changed\n"},
        {"a boundary put before the others",
         [](Model& m) {
             auto& boundaries = m.systems[0].boundaries;
             boundaries.items.insert(boundaries.items.begin(), {3, {}});
             boundaries.scale_factor = 2;
         },
         "boundaries: system 1 (Nitrate), boundary scale factor: 1 -> 2\n"
         "boundaries: boundary 1 of Nitrate: added\n",
         "boundaries: 1 item added, 1 value changed\n"},
        {"a boundary that moves to another segment", [](Model& m) { m.systems[0].boundaries.items[1].segment = 3; },
         "boundaries: boundary 2 of Nitrate, segment: 2 -> 3\n", "boundaries: 1 value changed\n"},
        {"values, times and pairs of a series",
         [](Model& m) {
             TimeSeries& series = m.systems[1].boundaries.items[1].series;
             series = {{0, 1.5F, 2, 5, 6, 7}, {1.5F, 2, 2, 3.25F, 4, 4}};
         },
         "boundaries: boundary 2 of Oxygen: 2 of 3 pairs differ, days 2 to 5, largest change -0.5; 3 pairs added, days "
         "1.5 "
         "to 7; 1 pair removed, day 1\n",
         "boundaries: 1 series changed\n"},
        {"a function put first, and one of its old fellows changed",
         [](Model& m) {
             auto& functions = m.flow_fields[0].functions;
             functions.insert(functions.begin(), {"Ditch", {{0, 2, 1}}, {}});
             functions[1].paths[1].fraction = 0.75F;
             functions[2].series.values[3] = 3.5F;
         },
         "flow paths: function 1 (Ditch) of flow field 1: added\n"
         "flow paths: path 2 of function 2 (Brook) of flow field 1, fraction: 0.5 -> 0.75\n"
         "flow time series: function 3 (Mill) of flow field 1: 1 of 4 pairs differs, day 5, largest change +0.5\n",
         "flow paths: 1 item added, 1 value changed\n"
         "flow time series: 1 series changed\n"},
        {"an exchange", [](Model& m) { m.exchange_fields[0].functions[0].pairs[0].length = 50; },
         "dispersive exchanges: pair 1 of function 1 (Tide) of exchange field 1, length: 100 -> 50\n",
         "dispersive exchanges: 1 value changed\n"},
        {"lists by segment",
         [](Model& m) {
             m.parameter_types[0].instances[0].values = {0.25F, 1, 0.5F};
             m.systems[0].initial_conditions[2].concentration = 7;
         },
         "segment parameters: parameter 1 of ISC number 2, value: 2 of 3 segments differ, segments 2 to 3, largest "
         "change "
         "+0.5\n"
         "initial conditions: system 1 (Nitrate), concentration: 1 of 3 segments differs, segment 3, largest change "
         "-1\n",
         "segment parameters: 1 series changed\n"
         "initial conditions: 1 series changed\n"},
        {"a type of another ISC number is another type", [](Model& m) { m.constant_types[0].isc = 12; },
         "constants: constants of ISC number 12: added\n"
         "constants: constants of ISC number 11: removed\n",
         "constants: 1 item added, 1 item removed\n"},
        {"an instance that comes into use", [](Model& m) { m.time_function_types[0].instances[0].used = true; },
         "time functions: time function 1 of ISC number 5, used: no -> yes\n", "time functions: 1 value changed\n"},
    };
}

TEST(ModelDiff, OfEachChange)
{
    for (const Case& one : cases()) {
        Model changed = river();
        one.change(changed);
        const std::vector<Difference> found = differences(river(), changed);
        EXPECT_EQ(difference_lines(found, false), one.lines) << one.what;
        EXPECT_EQ(difference_summary(found), one.summary) << one.what;
        EXPECT_EQ(differences(changed, river()).size(), found.size()) << one.what << ", the other way round";
        EXPECT_TRUE(differences(changed, changed).empty()) << one.what;
    }
}

TEST(ModelDiff, ListsEveryNumberWhenAsked)
{
    Model changed = river();
    changed.systems[0].loads.items[0].series = {{0, 1, 3, 5}, {1.5F, 2.25F, 2.5F, 3}};
    EXPECT_EQ(
        difference_lines(differences(river(), changed), true),
        "loads: load 1 of Nitrate: 1 of 3 pairs differs, day 1, largest change +0.25; 1 pair added, day 3; 1 pair "
        "removed, day 2\n"
        "  day 1: 2 -> 2.25\n"
        "  day 2: 2.5 removed\n"
        "  day 3: 2.5 added\n");
}

TEST(ModelDiff, ToleranceIsAPartOfTheLargerNumber)
{
    Model changed = river();
    changed.segments[0].volume = 1010;                              // 1 / 101 of the larger one
    changed.segments[1].slope = 1e-30F;                             // however small, all of it
    changed.systems[0].boundaries.items[0].series.times[3] = 5.04F; // 1 / 126
    EXPECT_EQ(difference_lines(differences(river(), changed, {0.0099}), false),
              "segments: segment 1, volume: 1000 -> 1010\n"
              "segments: segment 2, slope: 0 -> 1e-30\n");
    EXPECT_EQ(difference_lines(differences(river(), changed, {0.01}), false),
              "segments: segment 2, slope: 0 -> 1e-30\n");
}

TEST(ModelDiff, TellsSystemsOfOneNameApart)
{
    Model one = river();
    one.systems[1].name = one.systems[0].name = "A";
    Model other = one;
    other.systems[1].boundaries.items[1].segment = 1;
    EXPECT_EQ(difference_lines(differences(one, other), false),
              "boundaries: boundary 2 of system 2 (A), segment: 2 -> 1\n");
}

TEST(ModelDiff, Json)
{
    Model changed = river();
    changed.segments[0].name = "A \"B\"";
    changed.systems[0].loads.items[0].series = {{0, 1, 2}, {1.6F, 2, 2.5F}};
    std::ostringstream json;
    write_difference_json(json, differences(river(), changed), "a.db", "b\xFF.db", false, true);
    EXPECT_EQ(json.str(), R"({
  "old": "a.db",
  "new": "b?.db",
  "result": "different",
  "differences": [
    {
      "section": "segments",
      "change": "changed",
      "item": "segment 1",
      "field": "name",
      "old": "''",
      "new": "'A \"B\"'"
    },
    {
      "section": "loads",
      "change": "numbers changed",
      "item": "load 1 of Nitrate",
      "by": "day",
      "in_both": 3,
      "changed": {
        "count": 1,
        "first": 0.0,
        "last": 0.0,
        "largest_change": 0.1
      },
      "removed": {
        "count": 1,
        "first": 5.0,
        "last": 5.0
      },
      "every": [
        {
          "at": 0.0,
          "old": 1.5,
          "new": 1.6
        },
        {
          "at": 5.0,
          "old": 3.0
        }
      ]
    }
  ]
}
)");
}

/// Changes the value; false where there is none.
bool change(Model& model, const Address& address)
{
    const DatumValue value = value_of(model, address);
    if (value.integer != nullptr) {
        ++*value.integer;
    } else if (value.real != nullptr) {
        *value.real += 1;
    } else if (value.text != nullptr) {
        *value.text += '+';
    }
    return value.integer != nullptr || value.real != nullptr || value.text != nullptr;
}

TEST(ModelDiff, SeesAChangeOfAnyValueAndPutsItIntoItsSection)
{
    const std::string bytes = content_of(std::filesystem::path(VELM_GOLDEN_FILES) / "everything.inp");
    const Model model = read_text(bytes).model;
    std::size_t changed = 0;
    ReadOptions options;
    options.on_field = [&](const FieldText& field) {
        Model other = model;
        if (!change(other, field.address)) {
            return;
        }
        ++changed;
        const std::vector<Difference> found = differences(model, other);
        ASSERT_FALSE(found.empty()) << field.address.table << ' ' << field.address.column;
        EXPECT_EQ(found.front().section, field.section) << field.address.table << ' ' << field.address.column;
        EXPECT_EQ(section_of(field.address.table, field.address.column), field.section)
            << field.address.table << ' ' << field.address.column;
    };
    (void)read_text(bytes, options);
    EXPECT_GT(changed, 100U);
}

TEST(ModelDiff, OfRandomModelsWithThemselvesIsEmptyAlsoAfterExportAndImport)
{
    std::mt19937 random(6);
    for (int round = 0; round < 200; ++round) {
        const Model model = read_text(random_file(random)).model;
        EXPECT_EQ(difference_lines(differences(model, read_text(exported(model)).model), true), "") << round;
    }
}

} // namespace
} // namespace velm
