#pragma once

#include "fuzz/fuzz_bytes.hpp"

#include <filesystem>
#include <string>

namespace velm {

/// The bytes of a small sound model database with rows in every table. Made once, in `folder`, of small pages, so that
/// a change of one byte matters.
const std::string& sound_database(const std::filesystem::path& folder);

/// The same model in tables that check nothing, after changes to its rows: a value of any kind in any cell, a row
/// twice, a row less.
std::string database_with_rows(const std::filesystem::path& folder, FuzzBytes changes);

} // namespace velm
