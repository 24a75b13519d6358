#include "model_store/sqlite/sqlite_database.hpp"

#include "model_store/sqlite/unnamed_database.hpp"

namespace velm {

namespace {

[[noreturn]] void throw_error(sqlite3* connection)
{
    throw SqliteError(sqlite3_extended_errcode(connection), sqlite3_errmsg(connection));
}

} // namespace

Database::Database(const std::filesystem::path& file, int flags)
{
#ifndef _WIN32
    let_sqlite_open_unnamed_files();
#endif
    // given a file's whole path, SQLite cannot take its name for a special one; it wants UTF-8 everywhere
    const std::u8string name = std::filesystem::absolute(file).u8string();
    open(reinterpret_cast<const char*>(name.c_str()), flags);
}

Database::Database()
{
    open("", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    run("PRAGMA cache_size = -262144"); // KiB that stay in memory
}

void Database::open(const char* name, int flags)
{
    sqlite3* connection = nullptr;
    const int result = sqlite3_open_v2(name, &connection, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    connection_.reset(connection);
    if (result != SQLITE_OK) {
        throw SqliteError(result, connection == nullptr ? sqlite3_errstr(result) : sqlite3_errmsg(connection));
    }
    sqlite3_extended_result_codes(connection, 1);
    // a misspelt column must be an error, not a string
    sqlite3_db_config(connection, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
}

void Database::run(const char* sql) const
{
    if (sqlite3_exec(handle(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw_error(handle());
    }
}

std::int64_t Database::integer(const char* sql) const
{
    Statement statement(*this, sql);
    return statement.step() ? sqlite3_column_int64(statement.handle(), 0) : 0;
}

Statement::Statement(const Database& database, std::string_view sql, std::string_view* rest)
{
    sqlite3_stmt* statement = nullptr;
    const char* tail = nullptr;
    const int result =
        sqlite3_prepare_v2(database.handle(), sql.data(), static_cast<int>(sql.size()), &statement, &tail);
    statement_.reset(statement);
    if (result != SQLITE_OK) {
        throw_error(database.handle());
    }
    if (rest != nullptr) {
        *rest = sql.substr(static_cast<std::size_t>(tail - sql.data()));
    }
}

std::string_view Statement::text(int column) const
{
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(handle(), column));
    return bytes == nullptr ? std::string_view()
                            : std::string_view(bytes, static_cast<std::size_t>(sqlite3_column_bytes(handle(), column)));
}

bool Statement::fail() const
{
    throw_error(sqlite3_db_handle(handle()));
}

} // namespace velm
