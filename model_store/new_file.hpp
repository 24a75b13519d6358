#pragma once

#include "model_store/sqlite_database.hpp"

#include <filesystem>
#include <functional>

namespace velm {

/// Whether rows may come before, or without, those that they refer to.
enum class ForeignKeys { bound, free };

/// Writes a new database under a temporary name beside `file` and gives it its name when all is done, never in the
/// place of another file. `fill` runs within one transaction; `check` then sees the written file. Throws StoreError, or
/// what they throw; then no file is left.
void write_new_database(const std::filesystem::path& file, ForeignKeys keys,
                        const std::function<void(const Database&)>& fill,
                        const std::function<void(const std::filesystem::path& written)>& check);

} // namespace velm
