#pragma once

#include "input_file/input_file.hpp"

#include <string>
#include <string_view>

namespace velm {

/// True for a number that fills its columns and follows another number without a blank; asterisks are none.
[[nodiscard]] bool touches_its_neighbour(const FieldText& field);

/// A file's bytes (ISO 8859-1) as printable UTF-8, without blanks around them.
[[nodiscard]] std::string field_as_text(std::string_view bytes);

} // namespace velm
