#pragma once

#include <filesystem>

/// All that the tool asks of the operating system beyond the standard library. Failures are std::system_error
/// whose text names the file, except where another contract is given.
namespace velm {

[[nodiscard]] std::filesystem::path executable_directory();

/// Has those of standard input, output and error that are not open lead nowhere: a file that is opened later must not
/// become one of them. Writing to them fails as before, and so does writing to a file that grows too large, without a
/// signal that ends the process.
void prepare_streams();

/// True when standard error is a terminal that can rewrite a line and knows colours.
[[nodiscard]] bool has_capable_terminal();
/// Characters in a line of the terminal at standard error; 80 when it does not say.
[[nodiscard]] std::size_t terminal_columns();

/// Loads a library for the rest of the process and finds a procedure in it. Throws std::runtime_error with the
/// loader's own words.
[[nodiscard]] void (*procedure_of_library(const std::filesystem::path& library, const char* name))();

/// Has the system show a page; returns at once. Throws std::runtime_error when nothing can be started.
void open_in_browser(const std::filesystem::path& page);

} // namespace velm
