#pragma once

#include "model_store/numbered_rows.hpp"

#include <filesystem>
#include <span>

namespace velm {

/// Fills empty tables of a database that nobody has open. Throws SqliteError, or std::system_error when the file cannot
/// be written; the file is of no use then.
void save_rows(std::span<const NumberedTable> tables, const std::filesystem::path& database);

} // namespace velm
