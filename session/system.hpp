#pragma once

#include <cstdio>
#include <filesystem>

namespace velm {

// What sessions ask of the operating system beyond the standard library; load_host_library is another such function.

/// Creates `file` and opens it for writing; the caller closes it. Throws std::system_error when it exists or cannot be
/// created.
[[nodiscard]] std::FILE* create_new_file(const std::filesystem::path& file);

/// Closes a file that create_new_file has made, and removes it if it is still there.
void remove_new_file(std::FILE* opened, const std::filesystem::path& file) noexcept;

/// The library, or the program, that holds this function. Throws std::system_error when that is unknown.
[[nodiscard]] std::filesystem::path own_library();

/// What the environment variable VELM_SESSION names; empty without it.
[[nodiscard]] std::filesystem::path session_of_environment();

} // namespace velm
