#pragma once

#include <string>
#include <string_view>

namespace velm {

/// A model's text (ISO 8859-1) for a terminal: UTF-8, without control characters, which could steer it.
[[nodiscard]] std::string printable_text(std::string_view text);

} // namespace velm
