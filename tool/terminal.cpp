#include "tool/terminal.hpp"

#include "tool/operating_system.hpp"

#include <cstdlib>
#include <iostream>

namespace velm {
namespace {

std::string_view environment(const char* name)
{
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): the tool has one thread
    return value == nullptr ? "" : value;
}

} // namespace

bool has_capable_terminal()
{
    const std::string_view kind = environment("TERM");
    return standard_error_is_terminal() && !kind.empty() && kind != "dumb";
}

void print_error(std::string_view text)
{
    const bool coloured = has_capable_terminal() && environment("NO_COLOR").empty();
    std::cerr << (coloured ? "\x1b[1;31mvelm:\x1b[0m " : "velm: ") << text << '\n';
}

} // namespace velm
