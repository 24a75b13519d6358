#pragma once

#include "model_store/model_store.hpp"

#include <filesystem>

namespace velm {

/// Everything that load_model() refuses but in the tables that have a row for each pair or segment, without keeping
/// what is read.
void check_model(const std::filesystem::path& database, const LoadOptions& options = {});

} // namespace velm
