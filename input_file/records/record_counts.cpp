#include "input_file/fields/integer_text.hpp"
#include "input_file/form_rules.hpp"
#include "input_file/records/matching.hpp"
#include "input_file/records/record_reader.hpp"

#include <algorithm>
#include <functional>

namespace velm {
namespace {

constexpr std::int32_t most_shown = 99'999; ///< the greatest count that its field has room for

} // namespace

Count RecordReader::count(const Record& expected)
{
    record(expected);
    const Part& part = expected[0];
    Count count{0, is_asterisks(text_of(part)), place_of(part), part.name};
    if (!count.hidden) {
        count.number = integer_of(part).value_or(0);
    }
    if (count.number < 0) {
        report(form_rules::negative_count, part.name, "is a count below 0", "0 or more");
        count.number = 0;
    }
    return count;
}

Count RecordReader::repeated_count(const Record& expected, std::optional<std::int32_t> known)
{
    Count found = count(expected);
    if (known && (found.hidden ? *known <= most_shown : *known != found.number)) {
        report(form_rules::contradiction, found.name, "is not the number that an earlier section has",
               std::to_string(*known));
    }
    if (known && found.hidden) {
        found.number = *known;
        found.hidden = false;
    }
    return found;
}

bool RecordReader::goes_on(const Count& count, std::int32_t number, const Record& first)
{
    if (count.hidden) {
        return another_follows(count, number, is_ahead(first));
    }
    note(count, number, first);
    return number <= count.number;
}

bool RecordReader::any(const Count& count, const Record& before)
{
    return goes_on(count, count.hidden ? 1 : count.number + 1, before) || count.number > 0;
}

bool RecordReader::goes_on(const Count& count, std::int32_t number, std::string_view beginning)
{
    heading_ = beginning;
    return count.hidden ? another_follows(count, number, line_ahead().text.starts_with(beginning))
                        : number <= count.number;
}

bool RecordReader::another_follows(const Count& count, std::int32_t number, bool follows)
{
    if (follows) {
        return true;
    }
    if (number <= most_shown + 1) {
        const std::string found = std::to_string(number - 1);
        report_at(count.place, form_rules::contradiction, count.name, "*****",
                  "hides the count, but only " + found + " follow", found);
    }
    return false;
}

void RecordReader::refuse_more(const Count& count, const Record& first)
{
    if (is_ahead(first)) {
        report_at(count.place, form_rules::contradiction, count.name, std::to_string(count.number),
                  "is too low: there are more records of their kind", "the number of records");
        throw SectionLost();
    }
}

void RecordReader::note(const Count& count, std::int32_t number, const Record& first)
{
    auto list = std::ranges::find(announced_, &first, &Announced::first);
    if (list == announced_.end()) {
        list = announced_.emplace(list);
    }
    const bool one_record = number > 1 && result.records == list->records + 1;
    *list = {&first, count.place.line, count.name, count.number, number - 1, result.records, one_record};
}

/// "line 143 announces 1096 pairs, 1095 follow: correct the number or the pairs"
std::string RecordReader::Announced::in_words(const std::string& following) const
{
    std::string items(name.substr(std::string_view("number of ").size()));
    items.resize(std::min(items.find(" for "), items.size())); // "flow functions for flow field"
    std::ranges::transform(items, items.begin(), [](char one) { return one >= 'A' && one <= 'Z' ? one + ' ' : one; });
    items = items.ends_with("pairs") ? "pairs" : items;
    const std::string one =
        items.ends_with("ies") ? items.substr(0, items.size() - 3) + 'y' : items.substr(0, items.size() - 1);
    return "line " + std::to_string(line) + " announces " + std::to_string(number) + ' ' + (number == 1 ? one : items) +
           ", " + following + " follow: correct the number or the " + items;
}

/// Whether a line begins the next item of a list around the one which is counted in `count_line`.
bool RecordReader::begins_item_around(std::uint64_t count_line, std::string_view line) const
{
    return (!heading_.empty() && line.starts_with(heading_)) ||
           std::ranges::any_of(announced_, [&](const Announced& one) {
               return one.line < count_line && !one.over() && !one.first->is_row() && has_columns_of(*one.first, line);
           });
}

/// Whether what is ahead belongs behind a list.
bool RecordReader::is_behind(const Announced& list)
{
    const std::string_view line = line_ahead().text;
    return line.find("========") != std::string_view::npos || begins_item_around(list.line, line);
}

/// Names the count of a list that ends before its items are complete or goes on behind them, or says that a line stands
/// between them. What it looks at is skipped.
std::string RecordReader::remedy_by_count(const char* otherwise)
{
    std::ranges::sort(announced_, std::greater(), &Announced::line);
    const Announced* inner = nullptr;
    for (Announced& list : announced_) {
        if (list.records != result.records) {
            continue;
        }
        inner = inner == nullptr ? &list : inner;
        if (list.over() && is_ahead(*list.first)) {
            for (; list.one_record && is_ahead(*list.first); skip_line()) {
                ++list.follow;
            }
            return list.in_words(list.one_record ? std::to_string(list.follow) : "more");
        }
        if (!list.over() && is_behind(list)) {
            return list.in_words(std::to_string(list.follow));
        }
    }
    if (inner == nullptr || inner->over()) {
        return otherwise;
    }
    const bool ends = inner->one_record && is_another_record(*inner->first, line_ahead().text);
    skip_line();
    return is_ahead(*inner->first) ? "correct or remove this line, behind which the list of line " +
                                         std::to_string(inner->line) + " goes on"
           : ends ? inner->in_words(std::to_string(inner->follow))
                  : otherwise;
}

void RecordReader::deliver_count(const Address& counted, const Count& count) const
{
    if (options_.on_field) {
        options_.on_field(
            {.section = section_, .address = counted, .place = count.place, .text = count.hidden ? "*****" : ""});
    }
}

void RecordReader::deliver_series(const Record& row, const Count& count) const
{
    deliver_count({row.part("time").table, {}, {key_[0], key_[1]}}, count);
}

void RecordReader::time_pairs(const Count& count, const Record& row, TimeSeries& series)
{
    // gathered here and copied to size: a vector that grows in its place would keep up to half its room idle
    times_.clear();
    values_.clear();
    const Part& time = row.part("time");
    const Part& value = row.part("value");
    const auto first = static_cast<std::int32_t>(key_[0]);
    const auto second = static_cast<std::int32_t>(key_[1]);
    deliver_series(row, count);
    for (std::int32_t number = 1; goes_on(count, number, row); ++number) {
        key(first, second, number);
        record(row);
        times_.push_back(real_of(time));
        values_.push_back(real_of(value));
    }
    series.times.assign(times_.begin(), times_.end());
    series.values.assign(values_.begin(), values_.end());
}

} // namespace velm
