#include "input_file/fields/integer_text.hpp"
#include "input_file/form_rules.hpp"
#include "input_file/records/record_reader.hpp"

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
    return count.hidden ? another_follows(count, number, is_ahead(first)) : number <= count.number;
}

bool RecordReader::goes_on(const Count& count, std::int32_t number, std::string_view beginning)
{
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
    announced_ = {count.place.line, count.number, 0, result.records, count.hidden ? nullptr : &row};
    for (std::int32_t number = 1; goes_on(count, number, row); ++number) {
        key(first, second, number);
        record(row);
        announced_.follow = number;
        announced_.records = result.records;
        times_.push_back(real_of(time));
        values_.push_back(real_of(value));
    }
    series.times.assign(times_.begin(), times_.end());
    series.values.assign(values_.begin(), values_.end());
}

} // namespace velm
