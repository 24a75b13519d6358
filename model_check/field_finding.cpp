#include "model_check/field_finding.hpp"

#include "input_file/form_rules.hpp"
#include "model/words.hpp"
#include "plain_text/plain_text.hpp"

namespace velm {

namespace {

/// True for a number that fills its columns and follows another number without a blank; asterisks are none.
bool touches_its_neighbour(const FieldText& field)
{
    const auto offset = field.place.column - 1;
    if (offset == 0 || field.text.empty() || field.text.front() == ' ' || field.text.front() == '*') {
        return false;
    }
    const char before = field.record[offset - 1];
    return (before >= '0' && before <= '9') || before == '.';
}

} // namespace

std::optional<Finding> finding_of(const FieldText& field)
{
    const bool overflows = field.address.column.empty() && field.text.find('*') != std::string_view::npos;
    if (!overflows && !touches_its_neighbour(field)) {
        return {};
    }
    return Finding{
        .rule = overflows ? &form_rules::field_overflow : &form_rules::touching_fields,
        .address = field.address,
        .place = field.place,
        .section = name_of(field.section),
        .message = overflows ? "the number of its time pairs, above 99999, does not fit the five columns of its field"
                             : "follows its neighbour without a blank",
        .text = field_as_text(field.text)};
}

std::string field_as_text(std::string_view bytes)
{
    return printable_latin1(without_blanks(bytes), longest_quote);
}

} // namespace velm
