#include "model_check/check_file.hpp"
#include "model_check/report.hpp"
#include "model_store/model_store.hpp"
#include "tests/input_file/exported.hpp"
#include "tests/support/river.hpp"
#include "tests/support/test_folder.hpp"

namespace velm {
namespace {

namespace fs = std::filesystem;

/// The report without what is the same in each: "F" stands for the file, and remedies are left out.
std::string short_report(const FileFindings& findings)
{
    std::string report;
    for (const Finding& finding : findings.findings) {
        std::string line = line_of("F", finding);
        if (finding.remedy.empty()) {
            line.resize(line.size() - finding.rule->remedy.size() - 2);
        }
        report += line + '\n';
    }
    return report;
}

FileFindings check_bytes(const std::string& bytes)
{
    const TestFolder folder;
    write_file(folder / "a.inp", bytes);
    FileFindings found = check_input_file(folder / "a.inp");
    Model model;
    const FileFindings in_one_reading = check_and_read_input_file(folder / "a.inp", model);
    EXPECT_EQ(in_one_reading.findings.size(), found.findings.size());
    return found;
}

FileFindings check_loaded(Model model, std::size_t most_reals)
{
    const TestFolder folder;
    std::optional<Model> beginning = beginning_of(model, most_reals);
    const auto write = [&](const Model& copy) {
        write_file(folder / "a.inp", exported(copy));
        return folder / "a.inp";
    };
    return check_loaded_model(model, beginning, write);
}

FileFindings check_as_database(const Model& model)
{
    const TestFolder folder;
    save_model(model, folder / "a.db");
    return check_database(folder / "a.db", [&](const Model& loaded) {
        write_file(folder / "a.inp", exported(loaded));
        return folder / "a.inp";
    });
}

std::string replaced(std::string text, const std::string& from, const std::string& to)
{
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
}

TEST(CheckInputFile, EachThingThatCanBeWrong)
{
    struct Case {
        const char* what;
        const char* from;
        const char* to;
        const char* found;
    };
    const Case cases[] = {
        {"nothing", "", "", ""},
        {"asterisks; a time that reads as 0 for them does not go back", "    2.0000         2.5000\r\n",
         "**********         2.5000\r\n",
         "F:115:1: error V101 field overflow: loads, system 1, load 1, pair 3, time: '**********' holds no value: it "
         "was too wide for its field, "
         "expected a number\n"},
        {"a word in place of a time, which does not go back either", "    2.0000         2.5000\r\n",
         "       two         2.5000\r\n",
         "F:115:1: error V102 not a number: loads, system 1, load 1, pair 3, time: '       two' is not a number, "
         "expected a number\n"},
        {"a word in place of a boundary's segment, where water then seems to enter without one",
         "    2               Boundary Segment", "    x               Boundary Segment",
         "F:84:1: error V102 not a number: boundaries, system 1, boundary 2, segment: '    x' is not an integer, "
         "expected "
         "an integer\n"},
        {"asterisks in place of a number that tells rows apart", "ISC #:    11", "ISC #: *****",
         "F:154:8: error V101 field overflow: constants, isc: '*****' hides a number that tells what the record is, "
         "expected a number\n"},
        {"no number", "  2  50.0000  100.000", "  2  50.0000  NaN",
         "F:67:18: error V103 not a finite number: dispersive exchanges, exchange field 1, exchange function 1, "
         "exchange pair 1, length: 'NaN' is no number that a model can "
         "hold, expected a finite number\n"},
        {"a large number", "  2  50.0000  100.000", "  2  50.0000  1E+39",
         "F:67:18: error V104 beyond single precision: dispersive exchanges, exchange field 1, exchange function 1, "
         "exchange pair 1, length: '1E+39' is beyond single "
         "precision, expected 0, or a number from 1.4e-45 to 3.4028235e38\n"},
        {"fields that touch, and a negative volume", "    0     1000.00000", "    0-12345680.00000",
         "F:28:21: note V105 touching fields: segments, segment 1, volume: follows its neighbour without a blank\n"
         "F:28:21: warning V206 negative value: segments, segment 1, volume: -12345680 is negative\n"},
        {"a line feed alone", "Number of Segments\r\n", "Number of Segments\n",
         "F:19:39: warning V106 line end: segments: the line ends in a line feed alone, expected "
         "carriage return and line feed\n"},
        {"another label", "Number of Segments", "Number of segments",
         "F:19:31: note V107 other label: segments, Number of Segments: 'Number of segments' stands between the "
         "fields, expected 'Number of Segments'\n"},
        {"another form", "  1.00000  2.00000\r\n", "  1.0  2.00000\r\n",
         "F:51:3: note V108 other form: flow time series, flow field 1, flow function 1, pair 2, time: '1.0' is a "
         "number written in another way, expected "
         "'1.00000'\n"},
        {"a count too low, after which no time is said to be wrong", "    4               Number of Time",
         "    3               Number of Time",
         "F:53:1: error V109 record out of place: flow time series, inflow: '  5.00000  3.00000' is another record, of "
         "18 characters, expected the record 'inflow' of 30 characters; line 49 announces 3 pairs, 4 follow: correct "
         "the number or the pairs\n"},
        {"a count too high", "    4               Number of Time", "    5               Number of Time",
         "F:54:1: error V109 record out of place: flow time series, time pair: 'Mill                          ' is "
         "another record, of 30 characters, expected the record 'time pair' of 2 numbers; line 49 announces 5 pairs, 4 "
         "follow: correct the number or the pairs\n"},
        {"a word in a row", "  1.00000  2.00000\r\n", "  1.00000  x7\r\n",
         "F:51:12: error V102 not a number: flow time series, flow field 1, flow function 1, pair 2, value: 'x7' is "
         "not "
         "a number, expected a number\n"},
        {"a count that contradicts", "    2               Number of inflows", "    1               Number of inflows",
         "F:46:1: error V112 contradiction: flow time series, Number of inflows: '    1' is not the number that an "
         "earlier section has, expected 2\n"
         "F:54:1: error V109 record out of place: dispersive exchanges, banner: 'Mill                          ' is "
         "another record, of 30 characters, expected the record 'banner' of 88 characters; line 46 announces 1 inflow, "
         "more follow: correct the number or the inflows\n"},
        {"an empty line", "  1.00000  2.00000\r\n", "\r\n  1.00000  2.00000\r\n",
         "F:51:1: error V109 record out of place: flow time series, time pair: an empty line stands here, expected the "
         "record 'time pair' of 2 numbers; correct or remove this line, behind which the list of line 49 goes on\n"},
        {"a negative count", "    2               Number of boundaries", "   -2               Number of boundaries",
         "F:76:1: warning V113 negative count: boundaries, Number of boundaries: '   -2' is a count below 0, expected "
         "0 or more\n"
         "F:77:1: error V109 record out of place: boundaries, system name: '      1.000000      1.000000  Boundary "
         "Scale & Conversion Factors' is another record, of 65 characters, expected the record 'system name' of 31 "
         "characters; line 76 announces 0 boundaries, more follow: correct the number or the boundaries\n"},
        {"a missing segment, reported once", "    2               Boundary Segment",
         "    4               Boundary Segment",
         "F:16:11: warning V506 enters without concentration: system information, system 1, name: water from outside "
         "mixes into segment 2 by exchange pair 1 of exchange function 1 of exchange field 1, and system 1 has no "
         "boundary there; give system 1 a boundary at segment 2, of 0 where the water brings none of it\n"
         "F:84:1: error V201 missing segment: boundaries, system 1, boundary 2, segment: '    4' is not a segment of "
         "the model, expected a "
         "number from 1 to 3\n"},
        {"times that repeat", "  1.00000  2.00000\r\n  2.00000", "  1.00000  2.00000\r\n  1.00000",
         "F:52:3: warning V204 time repeats: flow time series, flow field 1, flow function 1, pair 3, time: time 1 "
         "follows 1\n"},
    };
    const std::string bytes = exported(river());
    for (const Case& one : cases) {
        EXPECT_EQ(short_report(check_bytes(replaced(bytes, one.from, one.to))), one.found) << one.what;
    }
    EXPECT_EQ(short_report(check_bytes(bytes + "more")),
              "F:" + std::to_string(std::count(bytes.begin(), bytes.end(), '\n') + 1) +
                  ":1: error V111 trailing bytes: initial conditions: the file goes on after its last record, "
                  "expected its end\n");
    std::string lost = replaced(bytes, "    4               Number of Time", "    3               Number of Time");
    lost = replaced(lost, "    2               Boundary Segment", "    9               Boundary Segment");
    EXPECT_EQ(check_bytes(lost).counts.size(), 1U) << "of values, nothing is said behind a section that is lost";
    EXPECT_EQ(short_report(check_bytes(bytes.substr(0, bytes.find("  1.00000  2.00000\r\n") + 5))),
              "F:51:1: error V110 file ends early: flow time series, time pair: '  1.0' is cut by the end of the file, "
              "expected the record 'time pair' of 2 numbers\n");
    EXPECT_EQ(short_report(check_bytes("")),
              "F:1:1: error V110 file ends early: system information, Module Type, Version: the file ends here, "
              "expected the record 'Module Type, Version' of 42 characters\n");
}

TEST(CheckDatabase, WhatItsExportLoses)
{
    struct Case {
        const char* what;
        std::function<void(Model&)> change;
        const char* found;
    };
    const Case cases[] = {
        {"nothing", [](Model&) {}, ""},
        {"too wide, in a type that the file numbers otherwise",
         [](Model& m) { m.time_function_types[2].instances[0].series.values[1] = -99999; },
         "F: error V101 field overflow: table time_function_value, time function type 3, time function 1, pair 2, "
         "column value: "
         "-99999 is too wide for its field\n"
         "F: warning V513 mark of a missing value: table time_function_value, time function type 3, time function 1, "
         "pair 2, column value: the value of pair 2 of time function 1 of time function type 3 is -99999, which stands "
         "for a missing one in records; put in the value that was meant, or leave the pair out; the engine would take "
         "it "
         "for a measurement\n"},
        {"losses of all weights, the worst of each first",
         [](Model& m) {
             m.segments[0].slope = 4e-6F;
             m.segments[1].slope = 0.1234567F;
             m.segments[2].slope = 0.0124444F;
             m.segments[2].roughness = 0.000014F;
             m.segments[1].roughness = 0.00006F;
             m.segments[1].velocity_multiplier = 1e-9F;
         },
         "F: warning V303 value vanishes: table segment, segment 1, column slope: 4e-06 is written 0.00000, off by 100 "
         "%\n"
         "F: warning V303 value vanishes: table segment, segment 2, column velocity_multiplier: 1e-09 is written "
         "0.00000, off by 100 %\n"
         "F: warning V302 value changed: table segment, segment 3, column roughness: 1.4e-05 is written 0.00001, off "
         "by 28.6 %\n"
         "F: note V301 digits lost: table segment, segment 3, column slope: 0.0124444 is written 0.01244, off by "
         "0.0354 %\n"
         "F: note V301 digits lost: table segment, segment 2, column slope: 0.1234567 is written 0.12346, off by "
         "0.00267 %\n"},
        {"times that the file makes one",
         [](Model& m) {
             m.systems[0].boundaries.items[0].series = {{0, 10000.0625F, 10000.125F}, {1, 1, 1}};
         },
         "F: warning V204 time repeats: table boundary_value, system 1, boundary 1, pair 3, column time: time 10000.1 "
         "follows 10000.1\n"
         "F: note V301 digits lost: table boundary_value, system 1, boundary 1, pair 2, column time: 10000.0625 is "
         "written 10000.1, off by 0.0375 days; nothing, when the difference does not matter; else give a time of "
         "fewer digits, or count the days from a later start\n"
         "F: note V301 digits lost: table boundary_value, system 1, boundary 1, pair 3, column time: 10000.125 is "
         "written 10000.1, off by 0.025 days; nothing, when the difference does not matter; else give a time of "
         "fewer digits, or count the days from a later start\n"},
        {"time steps that cross in the file alone",
         [](Model& m) {
             m.minimum_time_step = 0.0104F;
             m.maximum_time_step = 0.01041F;
         },
         "F: warning V207 time steps: table model, column minimum_time_step: 0.0104 is above the maximum time step, "
         "0.01\n"
         "F: warning V302 value changed: table model, column maximum_time_step: 0.01041 is written 0.010, off by "
         "0.00041 days; give it with fewer decimals\n"},
        {"a fraction that six digits do not show",
         [](Model& m) { m.systems[1].initial_conditions[0].dissolved_fraction = 1 / 3.0F; },
         "F: note V301 digits lost: table initial_condition, system 2, segment 1, column dissolved_fraction: "
         "0.33333334 "
         "is written 0.333333, off by 3.43e-07; nothing, when the difference does not matter; else give fractions of "
         "fewer decimals that together make what is meant\n"},
        {"a text without its end",
         [](Model& m) { m.constant_types[1].instances[0].description = std::string(45, 'x'); },
         "F: note V304 text cut: table constant, constant type 2, constant 1, column description: of 45 characters the "
         "file has 'xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx'\n"},
    };
    for (const Case& one : cases) {
        Model model = river();
        one.change(model);
        EXPECT_EQ(short_report(check_as_database(model)), one.found) << one.what;
        EXPECT_EQ(short_report(check_loaded(model, 1'000'000)), one.found) << one.what;
    }
}

TEST(CheckLoadedModel, LooksForLossesInTheBeginningOnly)
{
    Model model = river();
    TimeSeries& flows = model.flow_fields[0].functions[0].series;
    flows = {};
    for (int hour = 0; hour < 100'001; ++hour) {
        flows.times.push_back(static_cast<float>(hour) / 10);
        flows.values.push_back(1);
    }
    flows.times.back() = 0;
    model.systems[0].boundaries.items[0].series = {{0, 1, 2}, {0.1234567F, 0.1234567F, 0.1234567F}};
    const FileFindings found = check_loaded(model, 10);
    EXPECT_EQ(found.counts.at("V101").found, 1U); // the number of the pairs
    EXPECT_EQ(found.counts.at("V203").found, 1U); // the last pair
    EXPECT_LT(found.counts.at("V301").found, 3U);
    EXPECT_FALSE(found.counts.contains("V201")); // its paths name segments behind the first
    EXPECT_EQ(found.remarks.size(), 1U);
    EXPECT_TRUE(check_as_database(model).remarks.empty());
}

TEST(CheckDatabase, RowsThatAreNoModel)
{
    const TestFolder folder;
    const fs::path database = folder / "a.db";
    create_database(std::string(model_schema()) + "INSERT INTO segment (number, volume) VALUES (2, 9e99);", database);
    const auto none = [](const Model&) -> fs::path { throw std::logic_error("nothing to export"); };
    EXPECT_EQ(short_report(check_database(database, none)),
              "F: error V401 database row: table model: there is no row; run INSERT INTO model DEFAULT VALUES and set "
              "what the run needs\n"
              "F: error V401 database row: table segment, segment 2, column number: '2' is there, but 1 is missing; "
              "number the rows from 1 without gaps\n"
              "F: error V401 database row: table segment, segment 2, column volume: '9e+99' is too large for single "
              "precision; store a number within 3.4028234e38 of 0\n");
    EXPECT_THROW((void)check_database("nowhere.db", none), StoreError);
}

TEST(Check, PointsAtTheCountOfASeriesThatHidesIt)
{
    Model model = river();
    TimeSeries& series = model.flow_fields[0].functions[1].series;
    for (series = {}; series.times.size() < 100'000; series.values.push_back(0)) {
        series.times.push_back(static_cast<float>(series.times.size()));
    }
    const std::string hidden = "the number of its time pairs, above 99999, does not fit the five columns of its field";
    const std::string database = short_report(check_as_database(model));
    EXPECT_EQ(database.substr(0, database.find('\n')),
              "F: error V101 field overflow: table flow_value, flow field 1, flow function 2: " + hidden);
    const std::string input = short_report(check_bytes(exported(model)));
    EXPECT_EQ(input.substr(0, input.find('\n')),
              "F:55:1: error V101 field overflow: flow time series, flow field 1, flow function 2: " + hidden);
}

} // namespace
} // namespace velm
