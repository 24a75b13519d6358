#include "tests/model_store/store_fixture.hpp"

#include <fstream>

#include <sqlite3.h>

namespace velm {

namespace {

namespace fs = std::filesystem;

} // namespace

using Files = StoreTest;

TEST_F(Files, that_are_no_model_databases_are_refused)
{
    struct Case {
        std::string name;
        std::function<void(const fs::path& file)> make;
        std::string error; ///< after the file's name
    };
    const std::string path = "; give the path of a model database";
    const std::string create = "; create one with the schema that this program prints";
    const auto spoilt = [this](const std::string& sql) {
        return [this, sql](const fs::path& file) {
            fs::copy_file(this->file("good.db"), file);
            spoil(file, sql);
        };
    };
    const std::uintmax_t bytes = fs::file_size(good_database());
    const std::vector<Case> cases = {
        {"nothing", [](const fs::path&) {}, "does not exist" + path},
        {"folder", [](const fs::path& file) { fs::create_directory(file); }, "is not a file" + path},
        {"text", [](const fs::path& file) { write_file(file, std::string(5000, 'x')); },
         "cannot be read: file is not a database" + path},
        {"empty", [](const fs::path& file) { write_file(file, ""); },
         "is not a model database: its application_id is 0, not 1447382093" + create},
        {":memory:", spoilt("PRAGMA application_id = 7"),
         "is not a model database: its application_id is 7, not 1447382093" + create},
        {"newer", spoilt("PRAGMA user_version = 2"),
         "has tables of version 2, this program knows version 1; use a newer version of this program"},
        {"unversioned", spoilt("PRAGMA user_version = 0"),
         "has tables of version 0, which does not exist; set PRAGMA user_version to 1 when its tables are those that "
         "this program prints"},
        {"cut",
         [this, bytes](const fs::path& file) {
             write_file(file, content_of(this->file("good.db")).substr(0, bytes - 1));
         },
         "is cut short: it has " + std::to_string(bytes - 1) + " of " + std::to_string(bytes) +
             " bytes; copy it again"},
        {"wal", spoilt("PRAGMA journal_mode = WAL"),
         "is in WAL mode, which cannot be read without writing beside the file; close the programs that use it, then "
         "run PRAGMA journal_mode = DELETE in it"},
    };
    for (const Case& refused : cases) {
        refused.make(file(refused.name));
        EXPECT_EQ(load_error(file(refused.name)), quoted(file(refused.name)) + " " + refused.error);
    }
}

TEST_F(Files, with_other_tables_are_refused)
{
    const auto database = good_database();
    spoil(database, "DROP TABLE flow_path; ALTER TABLE load DROP COLUMN segment;"
                    "ALTER TABLE exchange_value RENAME TO kept; CREATE VIEW exchange_value AS SELECT * FROM kept;"
                    "DROP TABLE constant; CREATE VIRTUAL TABLE constant USING fts5(constant_type, number, used,"
                    "    description, value); DROP TABLE system;"
                    "CREATE TABLE System (Number, Name, tag AS ('x'), boundary_scale_factor,"
                    "    boundary_conversion_factor, load_scale_factor, load_conversion_factor,"
                    "    solids_transport_field, solids_density)");
    EXPECT_EQ(
        load_error(database),
        "table system, column tag: the column is computed; store its values\n"
        "table system, column maximum_concentration: the column is missing; create it as the schema has it\n"
        "table flow_path: the table is missing; create it as the schema has it\n"
        "table exchange_value: a view or virtual table stands in the table's place; copy its rows into a table as "
        "the schema has it\n"
        "table load, column segment: the column is missing; create it as the schema has it\n"
        "table constant: a view or virtual table stands in the table's place; copy its rows into a table as the "
        "schema has it");
}

TEST_F(Files, interrupted_while_being_changed_are_left_for_their_program_to_mend)
{
    const auto database = good_database();
    sqlite3* writer = nullptr;
    ASSERT_EQ(SQLITE_OK, sqlite3_open(database.string().c_str(), &writer));
    sqlite3_exec(
        writer,
        "PRAGMA cache_size = 1; BEGIN; UPDATE segment SET width = 5; CREATE TABLE much AS SELECT zeroblob(90000)",
        nullptr, nullptr, nullptr);
    fs::copy_file(database, file("cut.db"));
    fs::copy_file(file("good.db-journal"), file("cut.db-journal"));
    sqlite3_close(writer);
    const std::string before = content_of(file("cut.db"));
    EXPECT_EQ(load_error(file("cut.db")),
              quoted(file("cut.db")) +
                  " cannot be read: attempt to write a readonly database; open it once with the program that was "
                  "interrupted while changing it, or move away the journal beside it, a file whose name ends in "
                  "-journal, if that is not its own");
    EXPECT_EQ(content_of(file("cut.db")), before);
    EXPECT_TRUE(fs::exists(file("cut.db-journal")));
}

TEST_F(Files, are_read_without_a_trace)
{
    const auto database = good_database();
    const std::string before = content_of(database);
    const auto written = fs::last_write_time(database);
    fs::permissions(database, fs::perms::owner_read);
    fs::permissions(database.parent_path(), fs::perms::owner_read | fs::perms::owner_exec);
    LoadOptions options;
    options.quick_check = true;
    EXPECT_TRUE(load_model(database, options) == full_model());
    EXPECT_EQ(content_of(database), before);
    EXPECT_EQ(fs::last_write_time(database), written);
    EXPECT_EQ(names_in_folder(), std::vector<std::string>{"good.db"});
}

TEST_F(Files, fail_a_quick_check_for_what_a_load_does_not_look_at)
{
    const auto database = good_database();
    spoil(database, "UPDATE segment SET name = printf('%.*c', 3000, 'x') WHERE number = 3; CREATE TABLE remark (text);"
                    "INSERT INTO remark VALUES (zeroblob(2000000)); UPDATE segment SET name = ''");
    LoadOptions options;
    options.quick_check = true;
    EXPECT_EQ(load_error(database, options), "no error");

    spoil(database, "PRAGMA writable_schema = ON; UPDATE sqlite_schema SET rootpage = 2 WHERE name = 'remark'");
    EXPECT_EQ(load_error(database), "no error");
    EXPECT_EQ(load_error(database, options).substr(0, quoted(file("good.db")).size() + 13),
              quoted(file("good.db")) + " is damaged: ");
}

// Wherever a file is cut or a byte of it is wrong, a load ends with a model or with a StoreError.
TEST_F(Files, damaged_anywhere_do_no_harm)
{
    const auto database = good_database();
    spoil(database, "PRAGMA page_size = 4096; VACUUM"); // less of it is empty
    const std::string good = content_of(database);
    const auto set_byte = [&](std::size_t offset, int byte) {
        std::fstream stream(database, std::ios::binary | std::ios::in | std::ios::out);
        stream.seekp(static_cast<std::streamoff>(offset)).put(static_cast<char>(byte));
    };
    int refused = 0;
    for (std::size_t offset = 0; offset < good.size(); offset += 173) {
        set_byte(offset, ~good[offset]);
        refused += load_error(database) == "no error" ? 0 : 1;
        set_byte(offset, good[offset]);
    }
    EXPECT_GT(refused, 25);
    EXPECT_EQ(load_error(database), "no error");
    for (std::size_t length = good.size() - 1; length > 4096; length -= 4093) {
        fs::resize_file(database, length);
        EXPECT_NE(load_error(database), "no error") << length;
    }
}

} // namespace velm
