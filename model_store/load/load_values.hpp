#pragma once

#include "model/model.hpp"
#include "model_store/sqlite/sqlite_database.hpp"

#include <cstdint>
#include <functional>

namespace velm {

/// Fills a model, all other tables of which are loaded and sound, from the tables with a row for each pair of a series
/// or for each segment. `read` is the connection that the others came from; `other`, when given, sees the same rows and
/// takes half the work on a thread of its own, which has ended when this returns. `on_progress`, if there is one, is
/// called on the caller's thread with the rows that have been read.
///
/// True when all rows are as they must be. Otherwise the model is worth nothing, and its tables are to be read row by
/// row, by what says which row is wrong and why. Throws std::bad_alloc.
[[nodiscard]] bool load_values(const Database& read, const Database* other, Model& model,
                               const std::function<void(std::uint64_t rows)>& on_progress);

} // namespace velm
