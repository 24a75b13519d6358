#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace velm {

/// The manual page of the tool, or of one of its commands, for section 1, in the language of man(7).
[[nodiscard]] std::string manual_page(const CLI::App& tool, const CLI::App* command);

/// What can stand in the place of the last of `words`, which follow the tool's name: a line each, the word and, behind
/// a tab, what it means. Empty where a file belongs.
[[nodiscard]] std::string completions(const CLI::App& tool, const std::vector<std::string>& words);

/// Small letters from a to z as capitals.
[[nodiscard]] std::string in_capitals(std::string text);

} // namespace velm
