#pragma once

#include "model/model.hpp"
#include "model_check/file_findings.hpp"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace velm {

struct CheckOptions {
    std::size_t most_of_a_rule = 20; ///< how many findings of a rule to list; all are counted
    OnFinding on_finding{};          ///< hears of what is listed as it comes; without it, the result keeps them
    std::set<std::string, std::less<>> ignored{}; ///< codes of what is neither listed nor counted
    /// Called now and then with what is being done, as one of few texts, and how far that is; 0 of all where unknown.
    std::function<void(std::string_view work, std::uint64_t done, std::uint64_t all)> on_progress{};
};

/// Checks an input file's form and its values, in the order of the file. Throws std::system_error when it cannot be
/// read.
[[nodiscard]] FileFindings check_input_file(const std::filesystem::path& file, const CheckOptions& options = {});
/// The same in one reading, so that findings about values have no places in the file and come after the others;
/// `model` becomes what it holds, as far as it can be read.
[[nodiscard]] FileFindings check_and_read_input_file(const std::filesystem::path& file, Model& model);

/// Writes the model's input file and returns where it is, for as long as the check needs it.
using WriteInputFile = std::function<std::filesystem::path(const Model& model)>;

/// Checks a database's rows, what the input file that `write` makes of it loses, and its values as that file shows
/// them. A database whose rows cannot be a model has only findings about its rows. Throws StoreError when it is no
/// model database at all.
[[nodiscard]] FileFindings check_database(const std::filesystem::path& file, const WriteInputFile& write,
                                          const CheckOptions& options = {});

/// Of a model with more than `most_reals`, the first segments and the first pairs of each series, a quarter of
/// `most_reals` in all; and so many pairs of the longest that the file shows when their number is too large for it.
/// None of a smaller one. `model` is as it was when the call returns.
[[nodiscard]] std::optional<Model> beginning_of(Model& model, std::size_t most_reals);

/// The same for a model that was loaded from a database. Where it has a beginning, that is looked at for losses, and
/// the model's values are checked as they are stored; a remark says so. `beginning` is used up.
[[nodiscard]] FileFindings check_loaded_model(const Model& model, std::optional<Model>& beginning,
                                              const WriteInputFile& write, const CheckOptions& options = {});

} // namespace velm
