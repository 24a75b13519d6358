#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include <sqlite3.h>

namespace velm {

/// SQLite's own report of a failure; the border of the room turns it into a StoreError that says where.
class SqliteError : public std::runtime_error {
public:
    SqliteError(int result_code, const std::string& message) : std::runtime_error(message), code(result_code) {}
    int code; ///< the extended result code
};

/// An open connection; closed with the object.
class Database {
public:
    /// `flags` are those of sqlite3_open_v2. No name is special: ":memory:" is a file's, too.
    Database(const std::filesystem::path& file, int flags);
    /// An empty one of its own, in memory, or in a temporary file without a name as far as it is large.
    Database();

    /// Runs statements that answer nothing.
    void run(const char* sql) const;
    /// The integer that a statement of one row and one column answers.
    [[nodiscard]] std::int64_t integer(const char* sql) const;

    [[nodiscard]] sqlite3* handle() const { return connection_.get(); }

private:
    void open(const char* name, int flags);

    struct Close {
        void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
    };
    std::unique_ptr<sqlite3, Close> connection_;
};

/// A prepared statement; finalized with the object, before its database closes.
class Statement {
public:
    /// Prepares the first statement of `sql`. handle() is null, and there is nothing to step through, when that is
    /// empty. `rest`, when given, receives what follows that statement.
    Statement(const Database& database, std::string_view sql, std::string_view* rest = nullptr);

    /// Goes to the next row; false when there is none. Throws SqliteError.
    bool step()
    {
        const int result = sqlite3_step(statement_.get());
        return result == SQLITE_ROW || (result != SQLITE_DONE && fail());
    }

    [[nodiscard]] std::string_view text(int column) const;
    [[nodiscard]] sqlite3_stmt* handle() const { return statement_.get(); }

private:
    [[noreturn]] bool fail() const;

    struct Finalize {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

} // namespace velm
