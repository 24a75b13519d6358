#include "tests/model_store/store_fixture.hpp"

namespace velm {

namespace {

struct Damage {
    std::string sql; ///< what spoils the full model
    std::string error;
};

void expect_errors(const std::filesystem::path& good, const std::vector<Damage>& damages)
{
    const std::filesystem::path spoilt = good.parent_path() / "spoilt.db";
    for (const Damage& damage : damages) {
        std::filesystem::copy_file(good, spoilt, std::filesystem::copy_options::overwrite_existing);
        spoil(spoilt, damage.sql);
        EXPECT_EQ(load_error(spoilt), damage.error) << "after " << damage.sql;
    }
}

/// A copy of the table without types, keys and constraints, as tools make it, and then `sql`.
std::string loosened(const std::filesystem::path& good, const std::string& table, const std::string& sql)
{
    const std::string columns = query(good, "SELECT group_concat(name) FROM pragma_table_info('" + table + "')").at(0);
    return "CREATE TABLE copy (" + columns + "); INSERT INTO copy SELECT * FROM " + table + "; DROP TABLE " + table +
           "; ALTER TABLE copy RENAME TO " + table + "; " + sql;
}

/// Rows `first` to `last` of a time series.
std::string pairs(const std::string& table, const std::string& key, int first, int last)
{
    return "WITH RECURSIVE pair (n) AS (VALUES (" + std::to_string(first) +
           ") UNION ALL SELECT n + 1 FROM pair WHERE n < " + std::to_string(last) + ") INSERT INTO " + table +
           " SELECT " + key + ", n, n, n FROM pair";
}

} // namespace

using DamagedRows = StoreTest;

TEST_F(DamagedRows, with_bad_values)
{
    const auto good = good_database();
    const std::string time = "table boundary_value, system 1, boundary 1, pair 2, column time: ";
    const std::string finite = "; store a finite number";
    const std::string type = "table segment, segment 2, column type: ";
    const std::string bits = "; store a number from -2147483648 to 2147483647";
    const std::string used = "table constant, constant type 1, constant 2, column used: ";
    const auto set_time = [](const std::string& value) {
        return "UPDATE boundary_value SET time = " + value + " WHERE boundary = 1 AND number = 2";
    };
    const auto set_loose_time = [&](const std::string& value) {
        return loosened(good, "boundary_value", set_time(value));
    };
    const auto set_type = [&](const std::string& value) {
        return loosened(good, "segment", "UPDATE segment SET type = " + value + " WHERE number = 2");
    };
    expect_errors(
        good,
        {
            {set_time("9e999"), time + "'inf' is not finite" + finite},
            {set_time("-9e999"), time + "'-inf' is not finite" + finite},
            {set_time("3.5e38"), time + "'3.5e+38' is too large for single precision; store a number within "
                                        "3.4028234e38 of 0"},
            {set_time("-3.5e38"), time + "'-3.5e+38' is too large for single precision; store a number within "
                                         "3.4028234e38 of 0"},
            {set_time("1e-46"), time + "'1e-46' is too close to 0 for single precision; store 0, or a number of at "
                                       "least 1.4e-45"},
            {set_time("3.40282356e38"), "no error"}, // rounds to the largest
            {set_time("0.1"), "no error"},
            {set_loose_time("16777217"), "no error"}, // an integer that rounds
            {set_loose_time("NULL"), time + "'NULL' is not a number; store a number"},
            {set_loose_time("'12'"), time + "'12' is not a number; store a number"},
            {set_loose_time("''"), time + "'empty text' is not a number; store a number"},
            {set_loose_time("x'0102'"), time + "'BLOB of 2 bytes' is not a number; store a number"},
            {"UPDATE segment SET type = 2147483648 WHERE number = 2", type + "'2147483648' is beyond 32 bits" + bits},
            {"UPDATE segment SET type = -2147483649 WHERE number = 2", type + "'-2147483649' is beyond 32 bits" + bits},
            {set_type("3.0"), type + "'3.0' is not an integer; store an integer"},
            {set_type("NULL"), type + "'NULL' is not an integer; store an integer"},
            {set_type("'river'"), type + "'river' is not an integer; store an integer"},
            {"UPDATE constant SET used = 2 WHERE number = 2",
             used + "'2' is neither 0 nor 1; store 1 for yes, 0 for no"},
            {"UPDATE constant_type SET isc = 3000000000",
             "table constant_type, constant type 1, column isc: '3000000000' is beyond 32 bits" + bits},
        });
}

TEST_F(DamagedRows, with_bad_texts)
{
    const auto good = good_database();
    const std::string tag = "table system, system 2, column tag: ";
    const auto set_tag = [](const std::string& value) {
        return "UPDATE system SET tag = " + value + " WHERE number = 2";
    };
    const std::string name = "table model, column nps_file: ";
    expect_errors(
        good,
        {
            {set_tag("'sixsix'"), tag + "'sixsix' has 6 characters; shorten it to at most 5"},
            {set_tag("'\u00E4\u00F6\u00FC\u00DF\u00E4'"), "no error"},
            {set_tag("'O\u2082'"), tag + "'O\u2082' has the character \u2082 (U+2082), which ISO 8859-1 lacks; "
                                         "replace the character"},
            {set_tag("'\U0001F30A'"), tag + "'\U0001F30A' has the character \U0001F30A (U+1F30A), which ISO 8859-1 "
                                            "lacks; replace the character"},
            {set_tag("CAST(x'61E4' AS TEXT)"), tag + "'a\\xE4' is not UTF-8; store the text in UTF-8"},
            {set_tag("CAST(x'C1A1' AS TEXT)"), tag + "'\\xC1\\xA1' is not UTF-8; store the text in UTF-8"},
            {set_tag("CAST(x'E080A1' AS TEXT)"), tag + "'\\xE0\\x80\\xA1' is not UTF-8; store the text in UTF-8"},
            {set_tag("CAST(x'EDA080' AS TEXT)"), tag + "'\\xED\\xA0\\x80' is not UTF-8; store the text in UTF-8"},
            {set_tag("CAST(x'F4908080' AS TEXT)"),
             tag + "'\\xF4\\x90\\x80\\x80' is not UTF-8; store the text in UTF-8"},
            {set_tag("CAST(x'61E282' AS TEXT)"), tag + "'a\\xE2\\x82' is not UTF-8; store the text in UTF-8"},
            {set_tag("'a' || char(0)"), tag + "'a\\x00' has a NUL character; remove it"},
            {set_tag("'a' || char(10)"), tag + "'a\\x0A' has a line break; keep the text on one line"},
            {loosened(good, "system", set_tag("5")), tag + "'5' is not a text; store a text, '' for none"},
            {loosened(good, "system", set_tag("NULL")), tag + "'NULL' is not a text; store a text, '' for none"},
            {"UPDATE model SET nps_file = printf('%.*c', 513, '/')",
             name + "'" + std::string(80, '/') + "...' has 513 characters; shorten it to at most 512"},
            {"UPDATE model SET nps_file = printf('%.*c', 2000000, '/')",
             "table model: " + quoted(file("spoilt.db")) +
                 " cannot be read: string or blob too big; remove the text or BLOB of more than a million bytes"},
        });
}

TEST_F(DamagedRows, with_bad_numbers)
{
    const auto good = good_database();
    const std::string gaps = "; number the rows from 1 without gaps";
    const std::string series = "table flow_value, flow field 2, flow function 2";
    const std::string pair = series + ", pair ";
    expect_errors(
        good,
        {
            {"DELETE FROM model",
             "table model: there is no row; run INSERT INTO model DEFAULT VALUES and set what the run needs"},
            {"INSERT INTO model (number) VALUES (2)",
             "table model: there is more than one row; keep the row of number 1 only"},
            {"UPDATE flow_value SET number = 3 WHERE number = 2",
             pair + "3, column number: '3' is there, but 2 is missing" + gaps},
            {"UPDATE flow_value SET number = number + 6",
             pair + "7, column number: '7' is there, but 1 is missing" + gaps},
            {"UPDATE flow_value SET number = number - 2", pair + "-1, column number: '-1' is below 1" + gaps + "\n" +
                                                              series + ", column number: '0' is below 1" + gaps},
            {"UPDATE flow_value SET number = 9223372036854775807 WHERE number = 2",
             pair + "9223372036854775807, column number: '9223372036854775807' is beyond 32 bits" + gaps},
            {loosened(good, "flow_value", "UPDATE flow_value SET number = 1"),
             pair + "1, column number: '1' is there more than once" + gaps},
            {loosened(good, "flow_value", "UPDATE flow_value SET number = NULL WHERE number = 2"),
             series + ", column number: 'NULL' is not an integer; store an integer"},
            {"UPDATE system SET number = 3 WHERE number = 2; UPDATE initial_condition SET system = 3 WHERE system = 2",
             "table system, system 3, column number: '3' is there, but 2 is missing" + gaps},
            {"UPDATE constant SET number = 4 WHERE number = 2",
             "table constant, constant type 1, constant 4, column number: '4' is there, but 2 is missing" + gaps},
            {"INSERT INTO time_function_type (isc) VALUES (8); DROP TABLE parameter_type;"
             "CREATE TABLE parameter_type (number, isc); INSERT INTO parameter_type VALUES (1, 21), (2, 21)",
             "table parameter_type, parameter type 2, column isc: '21' is also the ISC number of parameter type 1; "
             "give "
             "each type its own"},
            {pairs("boundary_value", "1, 2", 1, 100001),
             "table boundary_value, system 1, boundary 2, pair 100001, column number: '100001' is beyond the 100000 "
             "pairs that a series here can have; thin the series out"},
            {pairs("load_value", "1, 1", 1, 100002),
             "table load_value, system 1, load 1, pair 100001, column number: '100001' is beyond the 100000 pairs that "
             "a series here can have; thin the series out"},
            {pairs("flow_value", "2, 1", 1, 100001), "no error"},
        });
}

TEST_F(DamagedRows, with_missing_partners)
{
    const auto good = good_database();
    const std::string orphan = "; add that row or remove this one";
    const std::string range = " is not a segment of the model; the segments are numbered from 1 to 3";
    const std::string every = "; give a row for each segment";
    expect_errors(
        good,
        {
            {"DELETE FROM flow_function WHERE number = 2",
             "table flow_path, flow field 2, flow function 2, flow path 1, column flow_function: '2' names no row of "
             "table flow_function" +
                 orphan +
                 "\ntable flow_value, flow field 2, flow function 2, pair 1, column flow_function: '2' names no row of "
                 "table flow_function" +
                 orphan},
            {"DELETE FROM exchange_field", "table exchange_function, exchange field 1, exchange function 1, column "
                                           "exchange_field: '1' names no row of table exchange_field" +
                                               orphan},
            {"INSERT INTO load_value VALUES (9, 1, 1, 0, 0)",
             "table load_value, system 9, load 1, pair 1, column load: '1' names no row of table load" + orphan},
            {"UPDATE boundary SET segment = 4 WHERE number = 2",
             "table boundary, system 1, boundary 2, column segment: '4'" + range},
            {"UPDATE load SET segment = 0 WHERE number = 2",
             "table load, system 1, load 2, column segment: '0'" + range},
            {"UPDATE segment SET bottom_segment = 4 WHERE number = 1",
             "table segment, segment 1, column bottom_segment: '4'" + range},
            {"UPDATE flow_path SET second_segment = -1 WHERE number = 1",
             "table flow_path, flow field 2, flow function 2, flow path 1, column second_segment: '-1'" + range},
            {"UPDATE exchange_pair SET first_segment = 4 WHERE number = 2",
             "table exchange_pair, exchange field 1, exchange function 1, exchange pair 2, column first_segment: '4'" +
                 range},
            {"DELETE FROM initial_condition WHERE system = 1 AND segment = 2",
             "table initial_condition, system 1, segment 3, column segment: '3' is there, but 2 is missing" + every},
            {"DELETE FROM initial_condition WHERE system = 1 AND segment = 3",
             "table initial_condition, system 1, column segment: there is no row for segment 3" + every},
            {"DELETE FROM initial_condition",
             "table initial_condition, system 1, column segment: there is no row for segment 1" + every +
                 "\ntable initial_condition, system 2, column segment: there is no row for segment 1" + every},
            {"INSERT INTO initial_condition VALUES (2, 4, 0, 0)",
             "table initial_condition, system 2, segment 4, column segment: '4'" + range},
            {"DELETE FROM parameter_value WHERE parameter = 1",
             "table parameter_value, parameter type 1, parameter 1, column segment: there is no row for segment 1" +
                 every},
            {"INSERT INTO parameter_value VALUES (1, 3, 1, 0)",
             "table parameter_value, parameter type 1, parameter 3, segment 1, column parameter: '3' names no row of "
             "table parameter" +
                 orphan},
        });
}

TEST_F(DamagedRows, are_listed_together_up_to_the_limit)
{
    const auto database = good_database();
    spoil(database, "UPDATE segment SET length = 9e999; UPDATE system SET tag = 'sixsix' WHERE number = 2;"
                    "UPDATE constant SET used = 7 WHERE number = 1");
    const std::string length = ", column length: 'inf' is not finite; store a finite number\n";
    const std::string first_three =
        "table segment, segment 1" + length + "table segment, segment 2" + length + "table segment, segment 3" + length;
    const std::string last_two =
        "table system, system 2, column tag: 'sixsix' has 6 characters; shorten it to at most 5\n"
        "table constant, constant type 1, constant 1, column used: '7' is neither 0 nor 1; store 1 for yes, 0 for no";
    LoadOptions options;
    options.most_problems = 5;
    EXPECT_EQ(load_error(database, options), first_three + last_two);
    options.most_problems = 3;
    EXPECT_EQ(load_error(database, options), first_three + "and more; put these right first");
}

} // namespace velm
