#pragma once

#include "model_store/model_store.hpp"
#include "model_store/sqlite/sqlite_database.hpp"

#include <cstddef>
#include <functional>

namespace velm {

/// What is done with a prepared statement of a script, which begins at `line`, counted from 1.
using RunStatement = std::function<void(Statement& statement, std::size_t line)>;

/// Prepares the statements of a script one by one and has each run. Throws StoreError with the line and the beginning
/// of the statement that fails with a SqliteError, and with `remedy`.
void run_script(const Database& database, const SqlScript& script, const RunStatement& run, const char* remedy);

} // namespace velm
