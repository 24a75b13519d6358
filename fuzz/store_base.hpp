#pragma once

#include "fuzz/fuzz_bytes.hpp"

#include <string>

namespace velm {

/// The bytes of a small sound model database with rows in every table, of small pages, so that a change of one byte
/// matters.
const std::string& sound_database();

/// The same model in tables that check nothing, after changes to its rows: a value of any kind in any cell, a row
/// twice, a row less.
std::string database_with_rows(FuzzBytes changes);

} // namespace velm
