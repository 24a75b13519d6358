#include "model_check/field_finding.hpp"

#include "model/words.hpp"
#include "plain_text/plain_text.hpp"

namespace velm {

bool touches_its_neighbour(const FieldText& field)
{
    const auto offset = field.place.column - 1;
    if (offset == 0 || field.text.empty() || field.text.front() == ' ' || field.text.front() == '*') {
        return false;
    }
    const char before = field.record[offset - 1];
    return (before >= '0' && before <= '9') || before == '.';
}

std::string field_as_text(std::string_view bytes)
{
    return printable_latin1(without_blanks(bytes), longest_quote);
}

} // namespace velm
