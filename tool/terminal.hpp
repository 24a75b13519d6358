#pragma once

#include <string_view>

namespace velm {

/// Prints "velm: TEXT" to standard error, the name in red on a terminal that may be coloured.
void print_error(std::string_view text);

} // namespace velm
