#pragma once

#include <cstdio>
#include <filesystem>
#include <string_view>

namespace velm {

// What sessions ask of the operating system beyond the standard library; load_host_library is another such function.

/// Creates `file`, writes its beginning and leaves it open for the rest; the caller closes it. Throws std::system_error
/// when it exists, or cannot be created or written; then no new file is left.
[[nodiscard]] std::FILE* create_new_file(const std::filesystem::path& file, std::string_view beginning);

/// Closes a file that create_new_file has made, and removes it if it is still there.
void remove_new_file(std::FILE* opened, const std::filesystem::path& file) noexcept;

/// The library, or the program, that holds this function. Throws std::system_error when that is unknown.
[[nodiscard]] std::filesystem::path own_library();

/// What the environment variable VELM_SESSION names; empty without it.
[[nodiscard]] std::filesystem::path session_of_environment();

} // namespace velm
