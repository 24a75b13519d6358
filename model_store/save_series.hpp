#pragma once

#include "model/model.hpp"

#include <filesystem>

namespace velm {

/// Throws StoreError when a series has not as many times as values, more pairs than the schema lets its table hold, or
/// a number that is not finite: what save_series() would write unseen.
void check_series(const Model& model);

/// Writes the time series of `model`, as check_series() lets pass, into the empty tables of a database that nobody has
/// open. Throws SqliteError, or std::system_error when the file cannot be written; the file is of no use then.
void save_series(const Model& model, const std::filesystem::path& database);

} // namespace velm
