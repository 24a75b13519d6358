#include "tool/system/terminal.hpp"

#include "plain_text/plain_text.hpp"
#include "tool/system/operating_system.hpp"

#include <cstdlib>
#include <iostream>

namespace velm {
namespace {

std::string color_choice = "auto"; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables): of the whole process

bool is_coloured()
{
    const char* const no_colour = std::getenv("NO_COLOR"); // NOLINT(concurrency-mt-unsafe): nothing changes it
    const bool by_itself = has_capable_terminal() && (no_colour == nullptr || *no_colour == '\0');
    return color_choice == "always" || (color_choice == "auto" && by_itself);
}

} // namespace

void choose_color(const std::string& when)
{
    color_choice = when;
}

void print_error(std::string_view text)
{
    std::cerr << (is_coloured() ? "\x1b[1;31mvelm:\x1b[0m " : "velm: ") << printable_lines(text) << '\n';
}

} // namespace velm
