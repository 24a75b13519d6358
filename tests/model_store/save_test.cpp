#include "tests/model_store/store_fixture.hpp"

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
         "table system, system 2: CHECK constraint failed: system.tag has at most 5 characters; change the model"},
        {[](Model& model) { model.segments[2].slope = std::numeric_limits<float>::quiet_NaN(); },
         "table segment, segment 3, column slope: 'nan' is not finite; store a finite number"},
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

TEST_F(Save, loses_no_row_of_series_of_any_length)
{
    Model model = full_model();
    for (const std::size_t length : {70'000U, 0U, 1U, 49U, 50U, 51U, 65'536U, 99U, 3U}) { // 50 rows go at once
        model.flow_fields[1].functions.push_back({"", {}, series_of(length)});
    }
    std::vector<std::uint64_t> progress;
    save_model(model, file("model.db"), {.on_progress = [&](std::uint64_t rows) { progress.push_back(rows); }});
    EXPECT_TRUE(load_model(file("model.db")) == model);
    ASSERT_EQ(progress.size(), 2U);
    EXPECT_EQ(progress[0] / 65'536, 1U);
    EXPECT_EQ(progress[1] / 65'536, 2U);
}

TEST_F(Save, leaves_the_place_of_a_missing_value_empty_until_it_is_filled)
{
    Model model = full_model();
    model.systems[0].boundaries.items[0].segment = 0; // no segment
    const std::vector<Address> missing = {{"boundary", "segment", {1, 1}},
                                          {"boundary_value", "time", {1, 1, 2}},
                                          {"model", "restart", {1}},
                                          {"parameter_value", "value", {1, 2, 3}}};
    save_model(model, file("gaps.db"), {.missing = missing});
    EXPECT_EQ(
        load_error(file("gaps.db")),
        "table model, column restart: 'NULL' is not an integer; store an integer\n"
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
    const std::vector<Address> missing = {{"model", "restart", {1}}};
    Model model = full_model();
    model.segments[2].slope = std::numeric_limits<float>::quiet_NaN();
    EXPECT_NE(error_of([&] { save_model(model, file("gaps.db"), {.missing = missing}); }).find("column slope: 'nan'"),
              std::string::npos);
    model = full_model();
    model.systems[0].boundaries.items[1].segment = 4;
    EXPECT_NE(error_of([&] { save_model(model, file("gaps.db"), {.missing = missing}); }), "no error");
    EXPECT_TRUE(names_in_folder().empty());
}

TEST_F(Save, never_replaces_a_file)
{
    const auto database = good_database();
    const std::string before = content_of(database);
    std::filesystem::create_symlink("nowhere", file("link"));
    for (const std::string name : {"good.db", "link"}) {
        const std::string error = file(name).string() + " exists and is left as it is; give a name that is not taken";
        EXPECT_EQ(error_of([&] { save_model(Model{}, file(name)); }), error);
        EXPECT_EQ(error_of([&] { create_database(model_schema(), file(name)); }), error);
    }
    // also when it appears while the new one is being written
    EXPECT_EQ(error_of([&] {
                  create_database("ATTACH '" + file("late.db").string() + "' AS late; CREATE TABLE late.mine (a)",
                                  file("late.db"));
              }),
              file("late.db").string() + " exists and is left as it is; give a name that is not taken");
    EXPECT_EQ(query(file("late.db"), "SELECT name FROM sqlite_schema"), std::vector<std::string>{"mine"});
    EXPECT_EQ(content_of(database), before);
    EXPECT_EQ(names_in_folder(), (std::vector<std::string>{"good.db", "late.db", "link"}));
}

TEST_F(Save, names_the_folder_that_is_missing)
{
    EXPECT_EQ(error_of([&] { save_model(Model{}, file("no/model.db")); }),
              "the folder " + file("no").string() + " does not exist; make it, or name another");
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
    const auto at = [&](std::size_t after) { return "line " + std::to_string(line + after) + ": "; };
    const std::string correct = "; correct the SQL";
    EXPECT_EQ(error("\nINSRT"), at(1) + "'INSRT' near \"INSRT\": syntax error" + correct);
    EXPECT_EQ(error("INSERT INTO model DEFAULT VALUES;\n\nINSERT INTO\n flow_value VALUES (1, 1, 1, 0, 0)"),
              at(2) + "'INSERT INTO' FOREIGN KEY constraint failed" + correct);
    EXPECT_EQ(error("INSERT INTO system (name) VALUES (\"double\")"),
              at(0) + R"('INSERT INTO system (name) VALUES ("double")' no such column: double)" + correct);
    EXPECT_TRUE(names_in_folder().empty());
    EXPECT_EQ(error("; /* nothing */ ;"), "no error");
}

} // namespace velm
