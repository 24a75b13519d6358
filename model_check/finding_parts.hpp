#pragma once

#include "input_file/input_file.hpp"
#include "model_check/finding.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace velm {

/// A reader's problem as a finding, at its place in the file.
[[nodiscard]] Finding finding_of(const InputProblem& problem);

/// "system 3, boundary 2, pair 17, time"
[[nodiscard]] std::string field_in_words(const Address& address);

/// True for a number that fills its columns and follows another number without a blank; asterisks are none.
[[nodiscard]] bool touches_its_neighbour(const FieldText& field);

/// A field without a value reads as 0, of which its row or its series may seem to be out of meaning.
[[nodiscard]] bool is_near_a_gap(const Address& address, const std::vector<Address>& gaps);

/// A file's bytes (ISO 8859-1) as printable UTF-8, without blanks around them.
[[nodiscard]] std::string field_as_text(std::string_view bytes);

} // namespace velm
