#pragma once

#include "model/model.hpp"
#include "model_check/finding.hpp"

#include <cstddef>
#include <filesystem>
#include <functional>

namespace velm {

struct CheckOptions {
    std::size_t most_of_a_kind = 20; ///< how many findings of a kind to list; all are counted
};

/// Checks an input file's form and its values. Throws std::system_error when it cannot be read.
[[nodiscard]] FileFindings check_input_file(const std::filesystem::path& file, const CheckOptions& options = {});

/// Writes the model's input file and returns where it is, for as long as the check needs it.
using WriteInputFile = std::function<std::filesystem::path(const Model& model)>;

/// Checks a database's rows and values, and what the input file that `write` makes of it loses. A database whose rows
/// cannot be a model has only findings about its rows. Throws StoreError when it is no model database at all.
[[nodiscard]] FileFindings check_database(const std::filesystem::path& file, const WriteInputFile& write,
                                          const CheckOptions& options = {});

} // namespace velm
