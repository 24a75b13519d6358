#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velm {

/// The name that takes the fewest characters added, removed or changed to become `mistyped`; empty when even
/// that one is another word: more than half of the characters would change.
[[nodiscard]] std::string nearest_name(std::string_view mistyped, const std::vector<std::string>& names);

} // namespace velm
