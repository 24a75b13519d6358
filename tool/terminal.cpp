#include "tool/terminal.hpp"

#include "tool/operating_system.hpp"

#include <cstdlib>
#include <iostream>

namespace velm {

void print_error(std::string_view text)
{
    const char* const no_colour = std::getenv("NO_COLOR"); // NOLINT(concurrency-mt-unsafe): nothing changes it
    const bool coloured = has_capable_terminal() && (no_colour == nullptr || *no_colour == '\0');
    std::cerr << (coloured ? "\x1b[1;31mvelm:\x1b[0m " : "velm: ") << text << '\n';
}

} // namespace velm
