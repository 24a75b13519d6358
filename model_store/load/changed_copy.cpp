#include "model_store/load/changed_copy.hpp"

#include "model_store/sqlite/open_model.hpp"
#include "model_store/sqlite/sql_script.hpp"
#include "model_store/sqlite/table_shape.hpp"

#include <algorithm>
#include <memory>
#include <string>

namespace velm {

namespace {

void copy_into(const Database& copy, const Database& original)
{
    const std::unique_ptr<sqlite3_backup, decltype(&sqlite3_backup_finish)> backup(
        sqlite3_backup_init(copy.handle(), "main", original.handle(), "main"), sqlite3_backup_finish);
    const int result = backup ? sqlite3_backup_step(backup.get(), -1) : sqlite3_errcode(copy.handle());
    if (result != SQLITE_DONE) {
        throw SqliteError(result, std::string("the copy to change failed: ") + sqlite3_errstr(result));
    }
}

bool is_model_table(const char* name)
{
    const auto& tables = model_tables();
    return std::any_of(tables.begin(), tables.end(),
                       [name](const TableShape& table) { return sqlite3_stricmp(table.name.c_str(), name) == 0; });
}

/// SQLite asks before each thing that a statement does. What it reads is free, for the copy holds nothing but what the
/// caller may read; of what it writes only rows of the model's tables are.
int allow(void* /*unused*/, int action, const char* first, const char* second, const char* database,
          const char* /*trigger*/)
{
    bool allowed = false;
    switch (action) {
    case SQLITE_SELECT:
    case SQLITE_READ:
    case SQLITE_RECURSIVE: allowed = true; break;
    case SQLITE_FUNCTION: allowed = sqlite3_stricmp(second, "load_extension") != 0; break;
    case SQLITE_INSERT:
    case SQLITE_UPDATE:
    case SQLITE_DELETE: allowed = sqlite3_stricmp(database, "main") == 0 && is_model_table(first); break;
    default: break; // ATTACH, PRAGMA, CREATE, DROP, transactions and all that is to come
    }
    return allowed ? SQLITE_OK : SQLITE_DENY;
}

void refuse_all_but_changes(Statement& statement)
{
    if (sqlite3_stmt_readonly(statement.handle()) != 0 || sqlite3_stmt_isexplain(statement.handle()) != 0) {
        throw SqliteError(SQLITE_AUTH, "changes nothing");
    }
}

} // namespace

Database changed_copy(const Database& original, const SqlScript& script, const OnChange& on_change)
{
    Database copy;
    copy_into(copy, original);
    // a copy that fails is thrown away
    copy.run("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; PRAGMA foreign_keys = ON");
    distrust(copy);
    copy.run("BEGIN");
    sqlite3_set_authorizer(copy.handle(), allow, nullptr);
    const auto run = [&](Statement& statement, std::size_t line) {
        refuse_all_but_changes(statement);
        const std::int64_t before = sqlite3_total_changes64(copy.handle());
        while (statement.step()) {
        }
        if (on_change) {
            on_change(line, sqlite3_total_changes64(copy.handle()) - before);
        }
    };
    run_script(copy, script, run, "correct it: UPDATE, INSERT and DELETE on the model's tables, within their checks");
    sqlite3_set_authorizer(copy.handle(), nullptr, nullptr);
    return copy;
}

} // namespace velm
