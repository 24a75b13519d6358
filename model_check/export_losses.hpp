#pragma once

#include "model/model.hpp"

#include <cstdint>
#include <filesystem>

namespace velm {

/// How many fields of the export `file` are asterisks, counts of pairs included. `lines_with_asterisks` is how many
/// lines have any, which may stand in texts; where there is none, the file is not read.
[[nodiscard]] std::uint64_t count_overflows(const std::filesystem::path& file, std::uint64_t lines_with_asterisks);

/// How many of the reals in the beginning of an export have other digits than the model.
struct LossSample {
    std::uint64_t reals = 0;
    std::uint64_t lossy = 0;
    bool whole = true; ///< false when the file goes on behind the sample
};

/// A longer file is looked at no further, for that would take as long as its export.
constexpr std::size_t sampled_bytes = 8'000'000;

/// Gives the model the values that the sample shows.
[[nodiscard]] LossSample sample_losses(Model& model, const std::filesystem::path& file);

} // namespace velm
