#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace velm {

/// A page of the project's documents where it lies on this system: installed, unpacked, or among the sources. Empty
/// when it is not there.
[[nodiscard]] std::filesystem::path document(const std::string& page);

/// The pages that are there, by name without ending, sorted.
[[nodiscard]] std::vector<std::string> document_names();

} // namespace velm
