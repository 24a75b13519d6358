#include "input_file/fields/integer_text.hpp"
#include "input_file/fields/text_content.hpp"
#include "input_file/form_rules.hpp"
#include "input_file/records/record_reader.hpp"

namespace velm {

const Part& RecordReader::find(std::string_view name)
{
    const std::size_t parts = form_->size();
    while ((*form_)[next_part_ % parts].name != name) {
        ++next_part_;
    }
    next_part_ %= parts;
    return (*form_)[next_part_++];
}

std::string_view RecordReader::text_of(const Part& part) const
{
    return part.column == 0 ? numbers_[static_cast<std::size_t>(&part - form_->begin())]
                            : record_.substr(part.column - 1, part.width);
}

Place RecordReader::place_of(const Part& part) const
{
    const std::size_t column = static_cast<std::size_t>(text_of(part).data() - record_.data()) + 1;
    return {record_line_, column};
}

void RecordReader::deliver(const Part& part, float real)
{
    if (options_.on_field && !part.table.empty()) [[unlikely]] {
        options_.on_field({section_, {part.table, part.name, key_}, place_of(part), record_, text_of(part), real});
    }
}

float RecordReader::real_of(const Part& part)
{
    const RealText real = part.column == 0 ? real_in_row(text_of(part)) : real_in_field(text_of(part), part.decimals);
    deliver(part, real.value);
    return real.kind == RealTextKind::exact ? real.value : settle(part, real);
}

float RecordReader::settle(const Part& part, const RealText& real)
{
    switch (real.kind) {
    case RealTextKind::exact: break;
    case RealTextKind::other_form:
        report(form_rules::other_form, part.name, "is a number written in another way",
               in_quotes(part.column == 0 ? row_text(real.value) : field_text(real.value, part.width, part.decimals)));
        break;
    case RealTextKind::asterisks: report_no_value(part); break;
    case RealTextKind::not_finite:
        report_gap(form_rules::not_finite, part, "is no number that a model can hold", "a finite number");
        break;
    case RealTextKind::no_single:
        report_gap(form_rules::beyond_single_precision, part, "is beyond single precision",
                   "0, or a number from 1.4e-45 to 3.4028235e38");
        break;
    case RealTextKind::no_number: report_gap(form_rules::not_a_number, part, "is not a number", "a number"); break;
    }
    return real.value;
}

void RecordReader::report_no_value(const Part& part)
{
    report_gap(form_rules::field_overflow, part,
               part.table.empty() ? "hides a number that tells what the record is"
                                  : "holds no value: it was too wide for its field",
               "a number");
}

std::optional<std::int32_t> RecordReader::integer_of(const Part& part)
{
    const IntegerText integer = integer_in(text_of(part), part.column != 0);
    switch (integer.kind) {
    case IntegerTextKind::exact: return integer.value;
    case IntegerTextKind::other_form:
        report(form_rules::other_form, part.name, "is a number written in another way", std::to_string(integer.value));
        return integer.value;
    case IntegerTextKind::asterisks: report_no_value(part); break;
    case IntegerTextKind::too_large:
        report_gap(form_rules::beyond_single_precision, part, "is beyond 32 bits",
                   "a number from -2147483648 to 2147483647");
        break;
    case IntegerTextKind::no_number:
        report_gap(form_rules::not_a_number, part, "is not an integer", "an integer");
        break;
    }
    return {};
}

std::string RecordReader::name(std::string_view name, std::string* whole)
{
    const std::string_view field = text(name);
    if (whole != nullptr) {
        *whole = field;
    }
    std::optional<std::string> before_nul = text_before_nul(field);
    if (!before_nul) {
        report(form_rules::dropped_nul, name, "is a name without a NUL after it", "one NUL, then blanks");
    }
    return before_nul ? *std::move(before_nul) : text_as_served(field);
}

void RecordReader::read(const Part& part, Rule rule, std::int32_t& value)
{
    deliver(part);
    const std::optional<std::int32_t> read = integer_of(part);
    value = read.value_or(0);
    const bool names_segment =
        rule == Rule::segment || ((rule == Rule::segment_or_outside || rule == Rule::segment_below) && value != 0);
    if (read && names_segment && result.whole && segments && (value < 1 || value > *segments)) {
        report(form_rules::missing_segment, part.name, "is not a segment of the model",
               *segments == 0 ? "no segment, for there is none" : "a number from 1 to " + std::to_string(*segments));
    }
}

std::optional<std::int32_t> RecordReader::identity(std::string_view name)
{
    const Part& part = find(name);
    if (is_asterisks(text_of(part))) {
        report(form_rules::field_overflow, name, "hides a number that tells what the record is", "a number");
        return {};
    }
    return integer_of(part);
}

std::string_view RecordReader::text(std::string_view name)
{
    const Part& part = find(name);
    deliver(part);
    return text_of(part);
}

void RecordReader::repeated(std::string_view name, std::optional<std::int32_t> known)
{
    const Part& part = find(name);
    if (!known) {
        return;
    }
    std::string right = std::to_string(*known);
    if (part.column != 0) {
        right = right.size() > part.width ? std::string(part.width, '*')
                                          : std::string(part.width - right.size(), ' ') + right;
    }
    if (text_of(part) != right) {
        report(form_rules::contradiction, name, "is not the number that belongs here", in_quotes(right));
    }
}

void RecordReader::repeated_text(std::string_view name, std::string_view known)
{
    const std::string_view text = text_of(find(name));
    if (text != known) {
        report(are_same_but_for_nuls(text, known) ? form_rules::dropped_nul : form_rules::contradiction, name,
               "is not what an earlier section has", in_quotes(known));
    }
}

} // namespace velm
