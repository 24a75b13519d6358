#pragma once

#include "model/model.hpp"
#include "model_check/file_findings.hpp"

#include <cstddef>
#include <cstdint>
#include <filesystem>

namespace velm {

/// What an export does not show of its model.
struct ExportLosses {
    FileFindings found;      ///< by the rules of a check; of each, the first ten or the ten worst are listed
    std::uint64_t reals = 0; ///< that were compared
    bool whole = true;       ///< false when the file goes on behind what was read
};

/// Of a longer file, its beginning is read, unless it is to be read as a whole: that takes as long as its export.
constexpr std::size_t sampled_bytes = 8'000'000;

/// Reads the export back and gives the model the values that it shows.
[[nodiscard]] ExportLosses losses_of_export(Model& model, const std::filesystem::path& file, bool read_whole);

} // namespace velm
