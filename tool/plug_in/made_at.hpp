#pragma once

#include <string>

namespace velm {

/// Now, or what the environment's SOURCE_DATE_EPOCH says, so that the same file can be made twice: "2026-01-31 14:05
/// UTC".
[[nodiscard]] std::string made_at();

} // namespace velm
