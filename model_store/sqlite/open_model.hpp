#pragma once

#include "model_store/problem_list.hpp"
#include "model_store/sqlite/sqlite_database.hpp"

#include <filesystem>
#include <string>

namespace velm {

/// Opens a model database for reading only, without trust in its contents, and begins a read transaction, so that all
/// tables are seen in one state. Returns when the file is one and has all tables and columns; otherwise throws
/// StoreError. Nothing is written beside the file.
[[nodiscard]] Database open_model(const std::filesystem::path& file, ProblemList& problems);

/// Whether there is a table, or anything else, of that name.
[[nodiscard]] bool has_table(const Database& database, const std::string& name);

/// Lets nothing that is stored in a database run, and bounds what a statement may take.
void distrust(const Database& database);

/// Lets SQLite verify the file's structure and constraints. Throws StoreError when it is damaged.
void check_quickly(const Database& database, const std::filesystem::path& file, ProblemList& problems);

/// Says of a whole file what is wrong with it.
[[nodiscard]] Finding file_problem(const std::filesystem::path& file, const std::string& message, std::string remedy);
/// Says so when SQLite found it, in the table that was being read, if any.
[[nodiscard]] Finding file_problem(const std::filesystem::path& file, const SqliteError& error,
                                   const std::string& table);

} // namespace velm
