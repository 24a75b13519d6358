#pragma once

#include "model_store/sqlite_database.hpp"

#include <filesystem>
#include <functional>

namespace velm {

/// Writes a new database under a temporary name beside `file` and gives it its name when all is done, never in the
/// place of another file. `fill` runs within one transaction, with foreign keys bound; `check` then sees the written
/// file. Throws StoreError, or what they throw; then no file is left.
void write_new_database(const std::filesystem::path& file, const std::function<void(const Database&)>& fill,
                        const std::function<void(const std::filesystem::path& written)>& check);

} // namespace velm
