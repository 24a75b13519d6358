#include "input_file/records/record_reader.hpp"
#include "input_file/form_rules.hpp"

#include "input_file/fields/text_content.hpp"
#include "input_file/records/matching.hpp"
#include "model/words.hpp"
#include "plain_text/plain_text.hpp"

#include <algorithm>
#include <cstring>
#include <utility>

namespace velm {
namespace {

std::string description_of(const Record& record)
{
    return "the record " + in_quotes(record.name()) +
           (record.is_row() ? " of " + std::to_string(record.size()) + " numbers"
                            : " of " + std::to_string(record.width()) + " characters");
}

} // namespace

RecordReader::RecordReader(std::istream& input, const ReadOptions& options, InputFile& read_so_far)
    : result(read_so_far), window_(input), options_(options)
{
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    if (window_.ahead().starts_with(mark)) {
        window_.skip(mark.size());
        report_at({1, 1}, form_rules::utf8_mark, "", "", "the file begins with the mark of UTF-8 text", "no such mark");
    }
}

RecordReader::Line RecordReader::line_ahead()
{
    const std::string_view ahead = window_.ahead();
    const void* const feed = std::memchr(ahead.data(), '\n', ahead.size());
    if (feed == nullptr) {
        const std::string_view rest = ahead.substr(0, FileWindow::longest_record);
        return {rest.ends_with('\r') ? rest.substr(0, rest.size() - 1) : rest, ahead.size(), LineEnd::missing};
    }
    const auto size = static_cast<std::size_t>(static_cast<const char*>(feed) - ahead.data());
    const bool well_ended = size != 0 && ahead[size - 1] == '\r';
    return {ahead.substr(0, well_ended ? size - 1 : size), size + 1,
            well_ended ? LineEnd::complete : LineEnd::feed_alone};
}

/// A text may have line ends in it. Then the record goes on to its full width.
std::optional<RecordReader::Line> RecordReader::broken_line_ahead(const Record& expected)
{
    const std::size_t width = expected.width();
    const std::string_view ahead = window_.ahead();
    if (ahead.size() < width + 2 || ahead.substr(width, 2) != "\r\n") {
        return {};
    }
    const std::string_view record = ahead.substr(0, width);
    const auto is_in_a_text = [&](std::size_t at) {
        return std::any_of(expected.begin(), expected.end(), [at](const Part& part) {
            return part.kind == PartKind::text && at + 1 >= part.column && at < part.end();
        });
    };
    for (std::size_t at = record.find('\n'); at != std::string_view::npos; at = record.find('\n', at + 1)) {
        if (!is_in_a_text(at)) {
            return {};
        }
    }
    return Line{record, width + 2, LineEnd::complete};
}

/// A line without the blanks at its end that the record has, filled up with them. Of a record that is a text alone, a
/// row of numbers is none.
std::optional<RecordReader::Line> RecordReader::trimmed_line_ahead(const Record& expected)
{
    Line line = line_ahead();
    if (line.text.size() >= expected.width() || line.end == LineEnd::missing || begins_item_around(line_, line.text) ||
        is_another_record(expected, line.text)) {
        return {};
    }
    const bool is_text_alone =
        std::all_of(expected.begin(), expected.end(), [](const Part& part) { return part.kind == PartKind::text; });
    const bool is_like_numbers =
        !without_blanks(line.text).empty() && line.text.find_first_not_of("0123456789+-.Ee ") == std::string_view::npos;
    padded_ = line.text;
    padded_.resize(expected.width(), ' ');
    if (is_text_alone ? is_like_numbers : !has_columns_of(expected, padded_)) {
        return {};
    }
    line.text = padded_;
    return line;
}

void RecordReader::take(const Line& line)
{
    constexpr std::uint64_t records_between_reports = 1U << 16U;
    record_ = line.text;
    record_line_ = line_;
    next_part_ = 0;
    split_line_ = nullptr;
    window_.skip(line.bytes);
    if (++result.records % records_between_reports == 0 && options_.on_progress) {
        options_.on_progress(window_.place());
    }
    ++line_;
    unended_ = line.end == LineEnd::missing;
    if (line.end != LineEnd::complete && !std::exchange(line_end_reported_, true)) {
        report_at({record_line_, line.text.size() + 1}, form_rules::line_end, "", "",
                  unended_ ? "the last line has no end" : "the line ends in a line feed alone",
                  "carriage return and line feed");
    }
}

void RecordReader::record(const Record& expected)
{
    form_ = &expected;
    if (expected.is_row()) {
        take_row(expected);
    } else {
        take_columns(expected);
    }
}

void RecordReader::take_row(const Record& expected)
{
    const Line line = line_ahead();
    const bool is_split = split_line_ == line.text.data() && split_numbers_ == expected.size(); // by is_ahead()
    if (!is_split && !split_row(line.text, expected.size(), true)) {
        lose(expected.name(), description_of(expected));
    }
    take(line);
    if (!row_in_form_) {
        report(form_rules::other_form, "", "is spaced in another way",
               "two blanks before each number, or one and a minus sign, and nothing after the last");
    }
}

/// Finds the numbers of a row; false when there are more or fewer. With `any_words`, one number among words will do.
bool RecordReader::split_row(std::string_view line, std::size_t numbers, bool any_words)
{
    bool has_number = false;
    const char* at = line.data();
    const char* const end = at + line.size();
    row_in_form_ = true;
    split_line_ = nullptr;
    for (std::size_t number = 0; number < numbers; ++number) {
        const char* const blanks = at;
        while (at != end && *at == ' ') {
            ++at;
        }
        if (at == end) {
            return false;
        }
        row_in_form_ = row_in_form_ && at - blanks == (*at == '-' ? 1 : 2);
        const char* const begin = at;
        while (at != end && *at != ' ') {
            ++at;
        }
        numbers_[number] = {begin, static_cast<std::size_t>(at - begin)};
        const bool is_number = begins_like_a_number(numbers_[number]);
        if (!is_number && !any_words) {
            return false;
        }
        has_number = has_number || is_number;
    }
    row_in_form_ = row_in_form_ && at == end;
    if (!has_number || !std::all_of(at, end, [](char character) { return character == ' '; })) {
        return false;
    }
    split_line_ = line.data();
    split_numbers_ = numbers;
    return true;
}

void RecordReader::take_columns(const Record& expected)
{
    Line line = line_ahead();
    if (line.text.size() != expected.width() || line.bytes == 0) {
        std::optional<Line> other = broken_line_ahead(expected);
        const bool is_trimmed = !other;
        other = is_trimmed ? trimmed_line_ahead(expected) : other;
        if (!other) {
            lose(expected.name(), description_of(expected));
        }
        if (is_trimmed) {
            report_at({line_, line.text.size() + 1}, form_rules::trimmed_blanks, expected.name(), "",
                      "the line ends without its blanks",
                      "column " + std::to_string(expected.width()) + " to be its last");
        }
        line = *other;
    }
    if (!has_columns_of(expected, line.text) && is_another_record(expected, line.text)) {
        lose(expected.name(), description_of(expected));
    }
    take(line);
    line_ += static_cast<std::uint64_t>(std::count(line.text.begin(), line.text.end(), '\n'));
    check_columns();
}

void RecordReader::check_columns()
{
    std::size_t blank = 1;
    const auto check = [&](std::size_t column, std::string_view right) {
        const std::string_view found = record_.substr(column - 1, right.size());
        if (found != right) [[unlikely]] {
            const auto differing = std::mismatch(found.begin(), found.end(), right.begin()).first - found.begin();
            report_at({record_line_, column + static_cast<std::size_t>(differing)}, form_rules::other_label,
                      form_->name(), found, "stands between the fields", in_quotes(right));
        }
    };
    for (const Part& part : *form_) {
        check(blank, blanks(part.column - blank));
        if (part.kind == PartKind::label) {
            check(part.column, part.name);
        }
        blank = part.end() + 1;
    }
}

void RecordReader::known_record(std::string_view name, std::string_view known)
{
    const Line line = line_ahead();
    const bool lacks_nuls = line.text != known && are_same_but_for_nuls(line.text, known);
    if ((line.text.size() != known.size() && !lacks_nuls) || line.bytes == 0) {
        lose(name, in_quotes(known));
    }
    form_ = nullptr;
    take(line);
    if (line.text != known) {
        const auto differing = std::ranges::mismatch(known, line.text).in1 - known.begin();
        const FindingRule& rule = !lacks_nuls                                      ? form_rules::other_label
                                  : line.text.find('\0') == std::string_view::npos ? form_rules::dropped_nul
                                                                                   : form_rules::trimmed_blanks;
        report_at({record_line_, static_cast<std::uint64_t>(differing) + 1}, rule, name, line.text, "is another text",
                  in_quotes(known));
    }
}

bool RecordReader::is_ahead(const Record& expected)
{
    const Line line = line_ahead();
    if (expected.is_row()) {
        constexpr std::size_t widest_number = 14; // with its blanks
        return line.text.size() <= widest_number * expected.size() && split_row(line.text, expected.size(), false) &&
               row_in_form_;
    }
    if (has_columns_of(expected, line.text)) {
        return true;
    }
    const std::optional<Line> broken = broken_line_ahead(expected);
    return broken && has_columns_of(expected, broken->text);
}

void RecordReader::skip_line()
{
    split_line_ = nullptr;
    window_.skip_line();
    ++line_;
    ++result.records;
}

void RecordReader::lose(std::string_view name, const std::string& expected)
{
    const Line line = line_ahead();
    if (line.bytes == 0) {
        report_at(next_place(), form_rules::file_ends_early, name, "", "the file ends here", expected);
    } else if (line.end == LineEnd::missing && line.bytes < FileWindow::longest_record) {
        report_at(next_place(), form_rules::file_ends_early, name, line.text, "is cut by the end of the file",
                  expected);
    } else {
        const std::string text(line.text); // which the remedy reads over
        const Place place = next_place();
        report_at(place, form_rules::record_out_of_place, name, text,
                  text.empty() ? "an empty line stands here"
                               : "is another record, of " + std::to_string(text.size()) + " characters",
                  expected, {}, remedy_by_count(text.empty() ? "remove the empty line" : ""));
    }
    announced_.clear();
    throw SectionLost();
}

void RecordReader::report(const FindingRule& said, std::string_view name, const std::string& message,
                          const std::string& expected)
{
    const bool may_be_cut = unended_ && &said == &form_rules::other_form;
    const FindingRule& rule = may_be_cut ? form_rules::file_ends_early : said;
    if (name.empty()) {
        return report_at({record_line_, 1}, rule, form_->name(), record_, message, expected);
    }
    const Part& part = form_->part(name);
    const Address address = part.table.empty() ? Address{} : Address{part.table, part.name, key_};
    report_at(place_of(part), rule, part.table.empty() ? part.name : "", text_of(part), message, expected, address);
}

void RecordReader::report_gap(const FindingRule& rule, const Part& part, const std::string& message,
                              const std::string& expected)
{
    if (!part.table.empty()) {
        result.gaps.push_back({part.table, part.name, key_});
        result.asterisks += &rule == &form_rules::field_overflow ? 1 : 0;
    }
    report(rule, part.name, message, expected);
}

void RecordReader::report_at(Place place, const FindingRule& rule, std::string_view field, std::string_view raw,
                             const std::string& message, const std::string& expected, const Address& address,
                             std::string remedy)
{
    ++result.problem_count;
    result.about_form += form_rules::is_about_form(rule) ? 1 : 0;
    nuls_are_lost_ = nuls_are_lost_ || &rule == &form_rules::dropped_nul;
    const bool is_listed = result.problems.size() < options_.most_problems;
    if (!is_listed && !options_.on_problem) {
        return;
    }
    const std::string text = printable_latin1(raw, longest_quote);
    Finding problem{.rule = &rule,
                    .address = address,
                    .place = place,
                    .section = name_of(section_),
                    .field = field,
                    .message = (raw.empty() ? "" : "'" + text + "' ") + message + ", expected " + expected,
                    .text = text,
                    .remedy = std::move(remedy)};
    if (options_.on_problem) {
        options_.on_problem(problem);
    }
    if (is_listed) {
        result.problems.push_back(std::move(problem));
    }
}

} // namespace velm
