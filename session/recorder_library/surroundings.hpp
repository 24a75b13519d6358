#pragma once

#include <filesystem>

namespace velm {

/// Where this library lies.
[[nodiscard]] std::filesystem::path recorder_directory();

/// The library that this one stands in front of: prevelmwdll_host beside it.
[[nodiscard]] std::filesystem::path real_host_library();

/// The file to record to: what the environment variable VELM_SESSION names, otherwise session.jsonl beside this
/// library.
[[nodiscard]] std::filesystem::path wanted_session_file();

} // namespace velm
