#pragma once

#include <filesystem>

/// All that the tool asks of the operating system beyond the standard library. Failures are std::system_error
/// whose text names the file, except where another contract is given.
namespace velm {

[[nodiscard]] std::filesystem::path executable_directory();

/// True when standard error is a terminal that can rewrite a line and knows colours.
[[nodiscard]] bool has_capable_terminal();
/// Characters in a line of the terminal at standard error; 80 when it does not say.
[[nodiscard]] std::size_t terminal_columns();

/// Loads a library for the rest of the process and finds a procedure in it. Throws std::runtime_error with the
/// loader's own words.
[[nodiscard]] void (*procedure_of_library(const std::filesystem::path& library, const char* name))();

[[nodiscard]] bool may_write(const std::filesystem::path& existing_file);

/// Creates an empty file whose name is `beginning` and characters that make it new; others may read it only when
/// `for_others`. Until put_in_place or discard it is removed when the process ends: by exit, by a signal that
/// ends processes or by a crash. At most four files at a time. Files of this beginning whose process was killed, which
/// removes nothing, are removed first where the system can tell.
[[nodiscard]] std::filesystem::path create_temporary_file(const std::filesystem::path& beginning, bool for_others);

/// Writes the temporary file through to the disk, gives it the permissions (and, where allowed, the owner) of
/// `file` if that exists, and renames it to `file`. When this throws, both are as they were.
void put_in_place(const std::filesystem::path& temporary, const std::filesystem::path& file);

void discard(const std::filesystem::path& temporary) noexcept;

} // namespace velm
