#include "model_store/row_writer.hpp"
#include "tests/model_store/store_fixture.hpp"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <limits>

namespace velm {

using Save = StoreTest;

TEST_F(Save, refuses_what_a_load_would_refuse_and_leaves_no_file)
{
    struct Case {
        std::function<void(Model& model)> change;
        std::string error;
    };
    const std::vector<Case> cases = {
        {[](Model& model) { model.systems[1].tag = "sixsix"; },
         "table system, system 2: CHECK constraint failed: length(tag) <= 5; change the model"},
        {[](Model& model) { model.segments[2].slope = std::numeric_limits<float>::quiet_NaN(); },
         "table segment, segment 3: NOT NULL constraint failed: segment.slope; change the model"},
        {[](Model& model) { model.segments[2].slope = std::numeric_limits<float>::infinity(); },
         "table segment, segment 3, column slope: 'inf' is not finite; store a finite number"},
        {[](Model& model) { model.systems[0].loads.items[1].series.values.pop_back(); },
         "table load_value, system 1, load 2: there are 3 times and 2 values; give as many of both"},
        {[](Model& model) { model.systems[1].initial_conditions.pop_back(); },
         "table initial_condition, system 2, column segment: there is no row for segment 3; give a row for each "
         "segment"},
        {[](Model& model) { model.parameter_types[0].instances[1].values.push_back(1); },
         "table parameter_value, parameter type 1, parameter 2, column segment: there are rows for 4 segments; give "
         "rows for the 3 that there are"},
        {[](Model& model) {
             model.systems[1].initial_conditions[2].dissolved_fraction = std::numeric_limits<float>::infinity();
         },
         "table initial_condition, system 2, segment 3, column dissolved_fraction: 'inf' is not finite; store a finite "
         "number"},
        {[](Model& model) { model.systems[0].boundaries.items[1].segment = 4; },
         "table boundary, system 1, boundary 2, column segment: '4' is not a segment of the model; the segments are "
         "numbered from 1 to 3"},
        {[](Model& model) { model.parameter_types[1].isc = 21; },
         "table parameter_type, parameter type 2: UNIQUE constraint failed: parameter_type.isc; change the model"},
        {[](Model& model) {
             model.systems[0].loads.items[0].series = {std::vector<float>(100001), std::vector<float>(100001)};
         },
         "table load_value, system 1, load 1: there are 100001 pairs; thin the series out to at most 100000"},
        {[](Model& model) {
             TimeSeries& series = model.flow_fields[1].functions[0].series;
             series = {std::vector<float>(1000), std::vector<float>(1000)};
             series.values[776] = std::numeric_limits<float>::quiet_NaN();
         },
         "table flow_value, flow field 2, flow function 1, pair 777, column value: 'nan' is not finite; store a "
         "finite number"},
    };
    for (const Case& refused : cases) {
        Model model = full_model();
        refused.change(model);
        EXPECT_EQ(error_of([&] { save_model(model, file("model.db")); }), refused.error);
        EXPECT_TRUE(names_in_folder().empty()) << refused.error;
    }
}

TimeSeries series_of(std::size_t pairs)
{
    TimeSeries series;
    for (std::size_t pair = 0; pair < pairs; ++pair) {
        series.times.push_back(static_cast<float>(pair) / 8);
        series.values.push_back(-static_cast<float>(pair) / 7);
    }
    return series;
}

TEST_F(Save, spreads_series_of_any_length_over_sound_pages)
{
    std::vector<std::size_t> lengths = {1, 12'000, 40'000, 1'500'000};
    for (std::size_t length = 100; length < 300; ++length) { // what one and two pages hold, to the row
        lengths.push_back(length);
    }
    for (const std::size_t length : lengths) {
        Model model = full_model();
        model.flow_fields[1].functions[0].series = series_of(length);
        const auto database = file(std::to_string(length) + ".db");
        save_model(model, database);
        EXPECT_EQ(query(database, "PRAGMA integrity_check"), std::vector<std::string>{"ok"}) << length;
        EXPECT_TRUE(load_model(database) == model) << length;
    }
}

TEST_F(Save, writes_series_while_the_model_is_still_to_come)
{
    Model model = full_model();
    model.flow_fields[1].functions.clear();
    for (const std::size_t length : {70'000U, 0U, 3U, 65'536U, 65'537U, 200'000U, 1U}) {
        model.flow_fields[1].functions.push_back({"", {}, series_of(length)});
    }
    const auto save = [&](const std::string& name, std::size_t given) {
        NewModel database(file(name), TemporaryFiles::plain());
        for (std::size_t function = 0; function < given; ++function) {
            TimeSeries passing = model.flow_fields[1].functions[function].series;
            database.add_series("flow_value", {2, static_cast<std::int32_t>(function) + 1}, passing);
        }
        database.finish(model);
    };
    save("whole.db", 7);
    EXPECT_EQ(query(file("whole.db"), "PRAGMA integrity_check"), std::vector<std::string>{"ok"});
    EXPECT_TRUE(load_model(file("whole.db")) == model);
    EXPECT_NE(error_of([&] { save("short.db", 6); }).find("table flow_value has not the rows"), std::string::npos);
    {
        NewModel unfinished(file("unfinished.db"), TemporaryFiles::plain());
        unfinished.add_series("flow_value", {2, 1}, model.flow_fields[1].functions[0].series);
    }
    EXPECT_EQ(names_in_folder(), std::vector<std::string>{"whole.db"});
}

TEST_F(Save, keeps_rows_apart_whose_keys_take_more_bytes)
{
    Model model = full_model();
    model.time_function_types[1].instances.resize(40'000);
    for (std::size_t number : {1U, 127U, 128U, 32'767U, 32'768U, 40'000U}) {
        model.time_function_types[1].instances[number - 1] = {true, "", series_of(number)};
    }
    save_model(model, file("keys.db"));
    EXPECT_EQ(query(file("keys.db"), "PRAGMA integrity_check"), std::vector<std::string>{"ok"});
    EXPECT_TRUE(load_model(file("keys.db")) == model);
    EXPECT_EQ(query(file("keys.db"), "SELECT time FROM time_function_value WHERE time_function_type = 2 AND "
                                     "time_function = 32768 AND number = 32765"),
              std::vector<std::string>{"4095.5"});
}

/// Made of a hole, so that it takes no room on the disk.
void lengthen(const std::filesystem::path& database, std::uint64_t bytes)
{
    constexpr std::uint64_t page_size = 4096;
    constexpr std::streamoff place_of_page_count = 28;
    std::filesystem::resize_file(database, bytes);
    std::fstream header(database, std::ios::binary | std::ios::in | std::ios::out);
    header.seekp(place_of_page_count);
    for (const unsigned shift : {24U, 16U, 8U, 0U}) {
        header.put(static_cast<char>(bytes / page_size >> shift));
    }
}

TEST_F(Save, leaves_out_the_page_that_programs_lock)
{
    constexpr std::uint64_t locked_byte = std::uint64_t{1} << 30U;
    for (const std::uint64_t bytes : {locked_byte - 65'536, locked_byte}) {
        Model model = full_model();
        const auto database = file(std::to_string(bytes) + ".db");
        save_model(model, database);
        spoil(database, "DELETE FROM boundary_value; DELETE FROM load_value; DELETE FROM flow_value; "
                        "DELETE FROM exchange_value; DELETE FROM time_function_value; DELETE FROM initial_condition; "
                        "DELETE FROM parameter_value");
        lengthen(database, bytes);
        model.flow_fields[1].functions[0].series = series_of(10'000);
        RowWriter(database).finish(numbered_tables(model));
        EXPECT_TRUE(load_model(database) == model) << bytes;
    }
}

TEST_F(Save, leaves_the_place_of_a_missing_value_empty_until_it_is_filled)
{
    Model model = full_model();
    model.systems[0].boundaries.items[0].segment = 0; // no segment
    const std::vector<MissingValue> missing = {{"boundary", "segment", {1, 1}},
                                               {"boundary_value", "time", {1, 1, 2}},
                                               {"model", "restart", {1}},
                                               {"parameter_value", "value", {1, 2, 3}}};
    save_model(model, file("gaps.db"), missing);
    EXPECT_EQ(
        load_error(file("gaps.db")),
        "table model, model 1, column restart: 'NULL' is not an integer; store an integer\n"
        "table boundary, system 1, boundary 1, column segment: 'NULL' is not an integer; store an integer\n"
        "table boundary_value, system 1, boundary 1, pair 2, column time: 'NULL' is not a number; store a number\n"
        "table parameter_value, parameter type 1, parameter 2, segment 3, column value: 'NULL' is not a number; "
        "store a number");
    spoil(file("gaps.db"), "UPDATE model SET restart = " + std::to_string(full_model().restart) +
                               "; UPDATE boundary SET segment = 2 WHERE segment IS NULL;"
                               "UPDATE boundary_value SET time = 0.5 WHERE time IS NULL;"
                               "UPDATE parameter_value SET value = 0 WHERE value IS NULL;");
    EXPECT_TRUE(load_model(file("gaps.db")) == full_model());
}

TEST_F(Save, refuses_all_else_that_is_wrong_beside_a_missing_value)
{
    const std::vector<MissingValue> missing = {{"model", "restart", {1}}};
    Model model = full_model();
    model.segments[2].slope = std::numeric_limits<float>::quiet_NaN();
    EXPECT_NE(error_of([&] { save_model(model, file("gaps.db"), missing); }).find("column slope: 'NULL'"),
              std::string::npos);
    model = full_model();
    model.systems[0].boundaries.items[1].segment = 4;
    EXPECT_NE(error_of([&] { save_model(model, file("gaps.db"), missing); }), "no error");
    EXPECT_TRUE(names_in_folder().empty());
}

TEST_F(Save, never_replaces_a_file)
{
    const auto database = good_database();
    const std::string before = content_of(database);
    std::filesystem::create_symlink("nowhere", file("link"));
    for (const std::string name : {"good.db", "link", "."}) {
        const std::string error = quoted(file(name)) + " exists already; give another name, or remove the file first";
        EXPECT_EQ(error_of([&] { save_model(Model{}, file(name)); }), error);
        EXPECT_EQ(error_of([&] { create_database(model_schema(), file(name)); }), error);
    }
    // also when it appears while the new one is being written
    EXPECT_EQ(error_of([&] {
                  create_database("ATTACH '" + file("late.db").string() + "' AS late; CREATE TABLE late.mine (a)",
                                  file("late.db"));
              }),
              quoted(file("late.db")) + " exists already; give another name, or remove the file first");
    EXPECT_EQ(query(file("late.db"), "SELECT name FROM sqlite_schema"), std::vector<std::string>{"mine"});
    EXPECT_EQ(content_of(database), before);
    EXPECT_EQ(names_in_folder(), (std::vector<std::string>{"good.db", "late.db", "link"}));
}

TEST_F(Save, names_the_folder_that_is_missing)
{
    EXPECT_EQ(error_of([&] { save_model(Model{}, file("no/model.db")); }),
              quoted(file("no/model.db")) +
                  " cannot be written: unable to open database file; check that the folder exists, can be written to "
                  "and has room");
}

TEST_F(Save, names_the_line_of_a_failing_statement)
{
    const auto error = [this](const std::string& sql) {
        return error_of([&] { create_database(std::string(model_schema()) + "\n-- more\n" + sql, file("model.db")); });
    };
    std::size_t line = 3;
    for (const char character : model_schema()) {
        line += character == '\n' ? 1U : 0U;
    }
    const auto at = [&](std::size_t after) { return "the statement from line " + std::to_string(line + after) + ": "; };
    const std::string correct = "; correct the SQL";
    EXPECT_EQ(error("\nINSRT"), at(1) + "near \"INSRT\": syntax error" + correct);
    EXPECT_EQ(error("INSERT INTO model DEFAULT VALUES;\n\nINSERT INTO\n flow_value VALUES (1, 1, 1, 0, 0)"),
              at(2) + "FOREIGN KEY constraint failed" + correct);
    EXPECT_EQ(error("INSERT INTO system (name) VALUES (\"double\")"), at(0) + "no such column: double" + correct);
    EXPECT_TRUE(names_in_folder().empty());
    EXPECT_EQ(error("; /* nothing */ ;"), "no error");
}

} // namespace velm
