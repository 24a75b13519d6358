#pragma once

#include "input_file/input_file.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace velm {

/// What is to be said of a field whatever it says: that it touches its neighbour, or hides how many pairs a series has.
[[nodiscard]] std::optional<Finding> finding_of(const FieldText& field);

/// A file's bytes (ISO 8859-1) as printable UTF-8, without blanks around them.
[[nodiscard]] std::string field_as_text(std::string_view bytes);

} // namespace velm
