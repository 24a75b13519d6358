#pragma once

#include <string>
#include <string_view>

namespace velm {

/// True when standard error is a terminal that can rewrite a line.
[[nodiscard]] bool has_capable_terminal();

/// Prints "velm: TEXT" to standard error, the name in red on a terminal that may be coloured.
void print_error(std::string_view text);

} // namespace velm
