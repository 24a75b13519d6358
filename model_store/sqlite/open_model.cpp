#include "model_store/sqlite/open_model.hpp"

#include "model_store/sqlite/table_shape.hpp"
#include "plain_text/plain_text.hpp"

#include <algorithm>
#include <array>
#include <fstream>
#include <utility>

namespace velm {

namespace {

constexpr int longest_value = 1'000'000; ///< bytes; the longest text of a model has 512 characters
constexpr int patience = 5'000;          ///< milliseconds to wait for a writer

/// A log that SQLite would play back, whether or not it is of this database.
std::filesystem::path log_beside(const std::filesystem::path& file)
{
    std::error_code error; // a file without a name has nothing beside it
    return std::filesystem::canonical(file, error) += "-wal";
}

/// Reading a file in WAL mode leaves two files beside it, and fails where they cannot be made.
bool is_in_wal_mode(const std::filesystem::path& file)
{
    constexpr std::size_t write_version = 18;
    std::array<char, write_version + 2> header{};
    std::ifstream(file, std::ios::binary).read(header.data(), header.size());
    return header[write_version] == 2 || header[write_version + 1] == 2;
}

void refuse_unreadable(const std::filesystem::path& file, ProblemList& problems)
{
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(file, error);
    if (!std::filesystem::exists(status)) {
        problems.add(file_problem(file, "does not exist", "give the path of a model database"));
    } else if (!std::filesystem::is_regular_file(status)) {
        problems.add(file_problem(file, "is not a file", "give the path of a model database"));
    } else if (is_in_wal_mode(file)) {
        problems.add(file_problem(file, "is in WAL mode, which cannot be read without writing beside the file",
                                  "close the programs that use it, then run PRAGMA journal_mode = DELETE in it"));
    } else if (const std::filesystem::path log = log_beside(file); std::filesystem::exists(log, error)) {
        problems.add(file_problem(
            file, "has a log beside it, " + shown(log) + ", that is not its own, for it is not in WAL mode",
            "move the log away if nobody needs it"));
    }
    problems.throw_if_any();
}

void check_identity(const Database& database, const std::filesystem::path& file, ProblemList& problems)
{
    const SchemaIdentity found = identity_of(database);
    const SchemaIdentity& known = model_identity();
    if (found.application_id != known.application_id) {
        problems.add(file_problem(file,
                                  "is not a model database: its application_id is " +
                                      std::to_string(found.application_id) + ", not " +
                                      std::to_string(known.application_id),
                                  "create one with the schema that this program prints"));
    } else if (found.version > known.version) {
        problems.add(file_problem(file,
                                  "has tables of version " + std::to_string(found.version) +
                                      ", this program knows version " + std::to_string(known.version),
                                  "use a newer version of this program"));
    } else if (found.version < known.version) {
        problems.add(file_problem(file,
                                  "has tables of version " + std::to_string(found.version) + ", which does not exist",
                                  "set PRAGMA user_version to " + std::to_string(known.version) +
                                      " when its tables are those that this program prints"));
    }
    problems.throw_if_any();
}

/// SQLite reads the missing part of a last page as zeros.
void check_length(const Database& database, const std::filesystem::path& file, ProblemList& problems)
{
    const std::int64_t expected = database.integer("PRAGMA page_size") * database.integer("PRAGMA page_count");
    std::error_code error;
    const std::uintmax_t length = std::filesystem::file_size(file, error);
    if (!error && length < static_cast<std::uintmax_t>(expected)) {
        problems.add(file_problem(
            file, "is cut short: it has " + std::to_string(length) + " of " + std::to_string(expected) + " bytes",
            "copy it again"));
    }
    problems.throw_if_any();
}

/// True for a table with rows of its own, as opposed to a view, a virtual table or nothing.
bool check_kind(const Database& database, const std::string& table, ProblemList& problems)
{
    Statement entry(database, "SELECT type = 'table' AND rootpage > 0 FROM sqlite_schema WHERE type IN ('table', "
                              "'view') AND name = '" +
                                  table + "' COLLATE NOCASE");
    if (!entry.step()) {
        problems.add(database_finding({table}, "", "the table is missing", "create it as the schema has it"));
        return false;
    }
    if (sqlite3_column_int(entry.handle(), 0) == 0) {
        problems.add(database_finding({table}, "", "a view or virtual table stands in the table's place",
                                      "copy its rows into a table as the schema has it"));
        return false;
    }
    return true;
}

void check_columns(const Database& database, const TableShape& table, ProblemList& problems)
{
    std::vector<std::string_view> missing(table.columns.begin(), table.columns.end());
    Statement columns(database, "SELECT lower(name), hidden FROM pragma_table_xinfo('" + table.name + "')");
    while (columns.step()) {
        const auto column = std::find(missing.begin(), missing.end(), columns.text(0));
        if (column == missing.end()) {
            continue;
        }
        if (sqlite3_column_int(columns.handle(), 1) != 0) {
            problems.add(database_finding({table.name, *column}, "", "the column is computed", "store its values"));
        }
        missing.erase(column);
    }
    for (const std::string_view column : missing) {
        problems.add(
            database_finding({table.name, column}, "", "the column is missing", "create it as the schema has it"));
    }
}

const char* remedy_for(int code)
{
    switch (code & 0xFF) { // the primary result code
    case SQLITE_NOTADB: return "give the path of a model database";
    case SQLITE_CORRUPT: return "restore the file from a copy, or save what the sqlite3 shell's .recover finds";
    case SQLITE_READONLY:
        return "open it once with the program that was interrupted while changing it, or move away the journal beside "
               "it, a file whose name ends in -journal, if that is not its own";
    case SQLITE_BUSY: return "wait until the program that writes to it is done";
    case SQLITE_TOOBIG: return "remove the text or BLOB of more than a million bytes";
    default: return "see whether the file may be read and its disk is sound";
    }
}

} // namespace

Finding file_problem(const std::filesystem::path& file, const std::string& message, std::string remedy)
{
    return database_finding({}, shown(file), message, std::move(remedy));
}

Finding file_problem(const std::filesystem::path& file, const SqliteError& error, const std::string& table)
{
    Finding problem = file_problem(file, "cannot be read: " + printable(error.what()), remedy_for(error.code));
    problem.address.table = table.empty() ? "" : std::string_view(model_table(table).name);
    return problem;
}

bool has_table(const Database& database, const std::string& name)
{
    return database.integer(
               ("SELECT count(*) FROM sqlite_schema WHERE name = '" + name + "' COLLATE NOCASE").c_str()) != 0;
}

void distrust(const Database& database)
{
    sqlite3* connection = database.handle();
    sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    sqlite3_limit(connection, SQLITE_LIMIT_LENGTH, longest_value);
    sqlite3_limit(connection, SQLITE_LIMIT_ATTACHED, 0);
    sqlite3_busy_timeout(connection, patience);
    database.run("PRAGMA cell_size_check = ON");
}

Database open_model(const std::filesystem::path& file, ProblemList& problems)
{
    refuse_unreadable(file, problems);
    Database database(file, SQLITE_OPEN_READONLY);
    distrust(database);
    database.run("PRAGMA query_only = ON; BEGIN");
    check_identity(database, file, problems);
    check_length(database, file, problems);
    for (const TableShape& table : model_tables()) {
        const bool may_be_missing = table.name == "segment_place" && !has_table(database, table.name);
        if (!may_be_missing && check_kind(database, table.name, problems)) {
            check_columns(database, table, problems);
        }
    }
    problems.throw_if_any();
    return database;
}

void check_quickly(const Database& database, const std::filesystem::path& file, ProblemList& problems)
{
    Statement check(database, "PRAGMA quick_check");
    while (check.step()) {
        if (check.text(0) != "ok") {
            problems.add(file_problem(file, "is damaged: " + printable(check.text(0)), remedy_for(SQLITE_CORRUPT)));
        }
    }
    problems.throw_if_any();
}

} // namespace velm
