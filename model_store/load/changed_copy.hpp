#pragma once

#include "model_store/model_store.hpp"
#include "model_store/sqlite/sqlite_database.hpp"

namespace velm {

/// A copy of an open model database that no other connection sees, changed by the statements of `script`; `original`
/// stays as it is. The copy is in memory, and in a temporary file without a name as far as it is large.
///
/// The statements may be UPDATE, INSERT and DELETE on the model's tables and may read every table; whatever else they
/// try is refused. The schema's checks and foreign keys bind. Throws StoreError with line and statement.
[[nodiscard]] Database changed_copy(const Database& original, const SqlScript& script, const OnChange& on_change);

} // namespace velm
