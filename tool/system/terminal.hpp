#pragma once

#include <string>
#include <string_view>

namespace velm {

/// Whether messages are coloured: "always", "never", or "auto", on a terminal that can, unless NO_COLOR is set.
void choose_color(const std::string& when);

/// Prints "velm: TEXT" to standard error, the name in red where messages are coloured.
void print_error(std::string_view text);

} // namespace velm
