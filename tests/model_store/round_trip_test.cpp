#include "model_store/sqlite/sqlite_database.hpp"
#include "tests/model_store/store_fixture.hpp"

#include <algorithm>
#include <string>
#include <vector>

namespace velm {

using RoundTrip = StoreTest;

TEST_F(RoundTrip, gives_back_every_field)
{
    const Model model = full_model();
    save_model(model, file("model.db"));
    EXPECT_TRUE(load_model(file("model.db")) == model);
    EXPECT_EQ(names_in_folder(), std::vector<std::string>{"model.db"});
}

TEST_F(RoundTrip, is_tried_with_something_in_every_column)
{
    const auto database = good_database();
    spoil(database, "INSERT INTO segment_place VALUES (2, 350000.25, -5600000.125)");
    for (const std::string& table : query(database, "SELECT name FROM sqlite_schema WHERE type = 'table'")) {
        for (const std::string& column : query(database, "SELECT name FROM pragma_table_info('" + table + "')")) {
            const std::string special = "SELECT count(*) FROM " + table + " WHERE " + column + " NOT IN (0, '')";
            EXPECT_NE(query(database, special), std::vector<std::string>{"0"}) << table << "." << column;
        }
    }
}

TEST_F(RoundTrip, keeps_bytes_that_a_text_cannot_have_as_their_pictures)
{
    Model model = full_model();
    model.segments[0].name = std::string("a\0b\r\n", 5) + std::string(35, '\0');
    save_model(model, file("model.db"));
    EXPECT_EQ(query(file("model.db"), "SELECT rtrim(name, '␀') FROM segment WHERE number = 1"),
              std::vector<std::string>{"a␀b␍␊"});
    EXPECT_TRUE(load_model(file("model.db")) == model);
}

TEST_F(RoundTrip, fills_what_is_left_out_with_the_models_own_defaults)
{
    create_database(std::string(model_schema()) +
                        "INSERT INTO model DEFAULT VALUES; INSERT INTO system (name) VALUES ('A'), ('B');"
                        "INSERT INTO segment DEFAULT VALUES; INSERT INTO flow_field DEFAULT VALUES;"
                        "INSERT INTO initial_condition (system, segment, concentration) VALUES (1, 1, 7), (2, 1, 8);"
                        "INSERT INTO constant_type (isc) VALUES (5);"
                        "INSERT INTO constant (constant_type, number, value) VALUES (1, 1, 6);",
                    file("model.db"));
    Model expected;
    expected.systems.resize(2);
    expected.systems[0].name = "A";
    expected.systems[0].initial_conditions = {{7, 1}};
    expected.systems[1].name = "B";
    expected.systems[1].initial_conditions = {{8, 1}};
    expected.segments.resize(1);
    expected.flow_fields.resize(1);
    expected.constant_types = {{5, {{true, "", 6}}}};
    EXPECT_TRUE(load_model(file("model.db")) == expected);
}

TEST_F(RoundTrip, takes_the_places_of_segments_from_files_that_have_them)
{
    const auto database = good_database();
    EXPECT_TRUE(load_segment_places(database).empty());
    spoil(database, "INSERT INTO segment_place VALUES (3, 1, 2), (2, 350000.25, -5600000.125)");
    EXPECT_EQ(load_segment_places(database), (std::vector<SegmentPlace>{{2, 350000.25, -5600000.125}, {3, 1, 2}}));
    spoil(database, "INSERT INTO segment_place VALUES (4, 9e999, 0)");
    EXPECT_EQ(error_of([&] { (void)load_segment_places(database); }),
              "table segment_place, segment 4, column segment: '4' is not a segment of the model; remove the row\n"
              "table segment_place, segment 4, column x: 'Inf' is not a finite number; store one, or remove the row");
    EXPECT_TRUE(load_model(database) == full_model());
    spoil(database, "DROP TABLE segment_place");
    EXPECT_TRUE(load_segment_places(database).empty());
    EXPECT_TRUE(load_model(database) == full_model());
}

TEST_F(RoundTrip, knows_rows_by_their_numbers_and_not_by_their_order)
{
    const auto database = good_database();
    spoil(database, "CREATE TABLE copy AS SELECT * FROM boundary_value ORDER BY number DESC, boundary;"
                    "DROP TABLE boundary_value; ALTER TABLE copy RENAME TO boundary_value;"
                    "ALTER TABLE boundary_value ADD COLUMN remark; CREATE VIEW mine AS SELECT 1;");
    EXPECT_TRUE(load_model(database) == full_model());
}

// in a file that is large enough for two threads
TEST_F(RoundTrip, takes_the_longest_series_that_an_export_takes)
{
    const auto database = good_database();
    spoil(database, "WITH RECURSIVE pair (n) AS (VALUES (1) UNION ALL SELECT n + 1 FROM pair WHERE n < 100000)"
                    "INSERT INTO boundary_value SELECT 1, 2, n, n / 4.0, -n FROM pair");
    std::vector<std::uint64_t> progress;
    int writer = SQLITE_OK;
    LoadOptions options;
    options.on_progress = [&](std::uint64_t rows) {
        progress.push_back(rows);
        const Database other(database, SQLITE_OPEN_READWRITE);
        writer = sqlite3_exec(other.handle(), "DELETE FROM boundary_value", nullptr, nullptr, nullptr);
    };
    const Model model = load_model(database, options);
    const TimeSeries& series = model.systems[0].boundaries.items[1].series;
    ASSERT_EQ(series.times.size(), 100000U);
    EXPECT_EQ(series.times.back(), 25000.0F);
    EXPECT_EQ(series.values.back(), -100000.0F);
    EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));
    EXPECT_GT(progress.back(), 100000U);
    EXPECT_EQ(writer, SQLITE_BUSY) << "what two connections read was changed between them";

    // what is wrong is said in the order of the tables, whoever met it first
    spoil(database, "UPDATE boundary_value SET time = 1e99 WHERE system = 1 AND boundary = 2 AND number = 99999;"
                    "DELETE FROM initial_condition WHERE system = 2 AND segment = 3;"
                    "UPDATE time_function_value SET value = 1e99;"
                    "INSERT INTO flow_value VALUES (99, 1, 1, 0, 0)");
    for (int attempt = 0; attempt < 20; ++attempt) {
        const std::string error = load_error(database);
        std::size_t last = 0;
        for (const char* what : {"initial_condition", "boundary_value", "flow_value", "time_function_value"}) {
            const std::size_t place = error.find(std::string("table ") + what);
            ASSERT_NE(place, std::string::npos) << error;
            EXPECT_GE(place, last) << error;
            last = place;
        }
    }
}

} // namespace velm
