#pragma once

#include "headless_host/prevelmwdll.h"

#include <array>
#include <filesystem>

namespace velm {

/// The host library that the recorder stands in front of, loaded for the rest of the process.
struct RealHost {
    using Procedure = void (*)();

    std::array<Procedure, 5> exchange{};                              ///< by call form, from 1
    void (*attach)(velm_host_answer answer, void* context) = nullptr; ///< null when it is no library of ours
};

/// Loads prevelmwdll_host, which lies beside this library. Throws std::runtime_error with the loader's own words.
[[nodiscard]] RealHost load_real_host();

/// Where this library lies.
[[nodiscard]] std::filesystem::path recorder_directory();

/// The file to record to: what the environment variable VELM_SESSION names, otherwise session.jsonl beside this
/// library.
[[nodiscard]] std::filesystem::path wanted_session_file();

} // namespace velm
