#pragma once

#include "model_store/model_store.hpp"
#include "model_store/sqlite_database.hpp"

#include <filesystem>
#include <functional>

namespace velm {

/// Whether rows may come before, or without, those that they refer to.
enum class ForeignKeys { bound, free };

/// Changes a database that nobody else has open, or creates it, in one transaction: `change` runs within. Throws
/// SqliteError, or what `change` throws.
void change_unshared(const std::filesystem::path& file, ForeignKeys keys,
                     const std::function<void(const Database&)>& change);

/// Has a new database written into a temporary file, and gives it its name when `write` is done. Throws StoreError, or
/// what `write` throws other than the failures of SQLite and of the system, which become one; then no file is left.
void write_new_database(const std::filesystem::path& file, const TemporaryFiles& temporary_files,
                        const std::function<void(const std::filesystem::path& unnamed)>& write);

} // namespace velm
