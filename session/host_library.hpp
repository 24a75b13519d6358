#pragma once

#include "headless_host/prevelmwdll.h"

#include <array>
#include <filesystem>

namespace velm {

/// A library with the five call forms, loaded for the rest of the process: any host's.
struct HostLibrary {
    using Procedure = void (*)();

    std::array<Procedure, 5> exchange{};                              ///< by call form, from 1
    void (*attach)(velm_host_answer answer, void* context) = nullptr; ///< null when it is no library of ours
};

/// Throws std::runtime_error with the loader's own words.
[[nodiscard]] HostLibrary load_host_library(const std::filesystem::path& file);

/// Has the library answer the request: calls the same form with the same values and lengths. Of a request that is
/// unknown only the key's length is.
void forward(const HostLibrary& host, const velm_host_request& request);

} // namespace velm
