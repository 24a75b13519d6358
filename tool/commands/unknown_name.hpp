#pragma once

#include "tool/exit_code.hpp"

#include <string>
#include <vector>

namespace velm {

/// The refusal (usage) of a name that is not among `names`, with the one that is nearest: "there is no page findngs;
/// did you mean findings? velm docs lists all".
[[nodiscard]] ToolError unknown_name(const std::string& kind, const std::string& mistyped,
                                     const std::vector<std::string>& names, const std::string& advice);

} // namespace velm
