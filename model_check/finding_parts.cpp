#include "model_check/finding_parts.hpp"

#include "model/words.hpp"
#include "plain_text/plain_text.hpp"

#include <algorithm>

namespace velm {

namespace {

FindingKind kind_of(ProblemKind kind)
{
    switch (kind) {
    case ProblemKind::line_end: return FindingKind::line_end;
    case ProblemKind::label: return FindingKind::label;
    case ProblemKind::form: return FindingKind::form;
    case ProblemKind::no_value: return FindingKind::field_overflow;
    case ProblemKind::no_number: return FindingKind::not_a_number;
    case ProblemKind::not_finite: return FindingKind::not_finite;
    case ProblemKind::no_single: return FindingKind::beyond_single_precision;
    case ProblemKind::contradiction: return FindingKind::contradiction;
    case ProblemKind::negative_count: return FindingKind::negative_count;
    case ProblemKind::missing_segment: return FindingKind::missing_segment;
    case ProblemKind::unstorable: return FindingKind::not_storable;
    case ProblemKind::record: return FindingKind::record_out_of_place;
    case ProblemKind::end_of_file: return FindingKind::file_ends_early;
    case ProblemKind::trailing_bytes: break;
    }
    return FindingKind::trailing_bytes;
}

bool is_asterisks(std::string_view text)
{
    return !text.empty() && text.find_first_not_of('*') == std::string_view::npos;
}

bool belongs_to_a_number(char character)
{
    return (character >= '0' && character <= '9') || character == '.';
}

} // namespace

Finding finding_of(const InputProblem& problem)
{
    const bool overflows = problem.kind == ProblemKind::unstorable && is_asterisks(problem.raw);
    Finding finding{overflows ? FindingKind::field_overflow : kind_of(problem.kind), {}};
    finding.message = problem.raw.empty() ? problem.message : "'" + problem.raw + "' " + problem.message;
    if (!problem.expected.empty()) {
        finding.message += ", expected " + problem.expected;
    }
    finding.place = problem.place;
    finding.section = name_of(problem.section);
    finding.field = problem.field;
    finding.text = problem.raw;
    return finding;
}

std::string field_in_words(const Address& address)
{
    const std::string column = name_in_words(address.column);
    const std::string row = row_in_words(address);
    return row.empty() ? column : row + ", " + column;
}

bool touches_its_neighbour(const FieldText& field)
{
    const auto offset = field.place.column - 1;
    return offset > 0 && !field.text.empty() && field.text.front() != ' ' && !is_asterisks(field.text) &&
           belongs_to_a_number(field.record[offset - 1]);
}

bool is_near_a_gap(const Address& address, const std::vector<Address>& gaps)
{
    return std::any_of(gaps.begin(), gaps.end(), [&](const Address& gap) {
        return gap.table == address.table && gap.numbers[0] == address.numbers[0] &&
               gap.numbers[1] == address.numbers[1];
    });
}

std::string field_as_text(std::string_view bytes)
{
    return printable_latin1(without_blanks(bytes), longest_quote);
}

} // namespace velm
