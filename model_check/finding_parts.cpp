#include "model_check/finding_parts.hpp"

#include "model_store/latin1.hpp"
#include "model_store/table_shape.hpp"

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

std::string row_in_words(const Datum& datum)
{
    if (datum.table == "model") {
        return {};
    }
    const TableShape& shape = model_table(datum.table);
    std::string words;
    for (std::size_t key = 0; key < shape.keys; ++key) {
        words += (key == 0 ? "" : ", ") + shape.key_word(key) + " " + std::to_string(datum.key.at(key));
    }
    return words;
}

std::string field_in_words(const Datum& datum)
{
    std::string column(datum.column);
    std::replace(column.begin(), column.end(), '_', ' ');
    const std::string row = row_in_words(datum);
    return row.empty() ? column : row + ", " + column;
}

bool touches_its_neighbour(const FieldText& field)
{
    const auto offset = field.place.column - 1;
    return offset > 0 && !field.text.empty() && field.text.front() != ' ' && !is_asterisks(field.text) &&
           belongs_to_a_number(field.record[offset - 1]);
}

bool is_near_a_gap(const Datum& datum, const std::vector<Datum>& gaps)
{
    return std::any_of(gaps.begin(), gaps.end(), [&](const Datum& gap) {
        return gap.table == datum.table && gap.key[0] == datum.key[0] && gap.key[1] == datum.key[1];
    });
}

std::string field_as_text(std::string_view bytes)
{
    const std::size_t first = std::min(bytes.find_first_not_of(' '), bytes.size());
    bytes.remove_prefix(first);
    return printable(utf8_from_latin1(bytes.substr(0, bytes.find_last_not_of(' ') + 1)));
}

} // namespace velm
