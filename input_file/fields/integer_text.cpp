#include "input_file/fields/integer_text.hpp"

#include "model/words.hpp"

#include <charconv>

namespace velm {

IntegerText integer_in(std::string_view text, bool in_field)
{
    if (in_field && is_asterisks(text)) {
        return {IntegerTextKind::asterisks};
    }
    const std::string_view number = without_blanks(text);
    if (number.empty()) {
        return {};
    }
    const bool plus = number.front() == '+';
    std::int32_t value = 0;
    const auto read = std::from_chars(number.data() + (plus ? 1 : 0), number.data() + number.size(), value);
    if (read.ptr != number.data() + number.size() || read.ec == std::errc::invalid_argument ||
        number.starts_with("+-")) {
        return {};
    }
    if (read.ec == std::errc::result_out_of_range) {
        return {IntegerTextKind::too_large};
    }
    const std::string_view digits = number.substr(value < 0 ? 1 : 0);
    const bool exact =
        number.end() == text.end() && !plus && (digits == "0" || digits.front() != '0') && digits.front() != '-';
    return {exact ? IntegerTextKind::exact : IntegerTextKind::other_form, value};
}

} // namespace velm
