#include "model/real_in_words.hpp"
#include "model/words.hpp"
#include "model_diff/number_ranges.hpp"
#include "model_diff/report.hpp"

#include <array>

namespace velm {

namespace {

/// "days 120 to 150", "segment 3"
std::string range_in_words(const NumberChanges& numbers, const NumberRange& range)
{
    const std::string unit = numbers.by_segment ? "segment" : "day";
    if (range.first == range.last) {
        return unit + ' ' + real_in_words(range.first);
    }
    return unit + "s " + real_in_words(range.first) + " to " + real_in_words(range.last);
}

std::string numbers_in_words(const NumberChanges& numbers)
{
    const std::string number = numbers.by_segment ? "segment" : "pair";
    std::string words;
    const NumberRange changed = NumberRange::of(numbers, Change::changed);
    if (changed.count > 0) {
        words = std::to_string(changed.count) + " of " + counted(numbers.in_both, number) +
                (changed.count == 1 ? " differs, " : " differ, ") + range_in_words(numbers, changed) +
                ", largest change " + (changed.largest_change < 0 ? "" : "+") + changed.largest_change_in_words();
    }
    for (const Change change : {Change::added, Change::removed}) {
        const NumberRange range = NumberRange::of(numbers, change);
        if (range.count > 0) {
            words += (words.empty() ? "" : "; ") + counted(range.count, number) + ' ' + std::string(name_of(change)) +
                     ", " + range_in_words(numbers, range);
        }
    }
    return words;
}

std::string line_of(const Difference& difference)
{
    std::string line(name_of(difference.section));
    line += difference.item.empty() ? "" : ": " + difference.item;
    line += difference.field.empty() ? "" : (difference.item.empty() ? ": " : ", ") + difference.field;
    line += ": ";
    switch (difference.change) {
    case Change::changed: line += difference.old_value + " -> " + difference.new_value; break;
    case Change::numbers: line += numbers_in_words(difference.numbers); break;
    default: line += name_of(difference.change);
    }
    return line + '\n';
}

std::string line_of(const NumberChanges& numbers, const NumberChange& number)
{
    std::string line = std::string("  ") + (numbers.by_segment ? "segment " : "day ") + real_in_words(number.at) + ": ";
    switch (number.change) {
    case Change::added: return line + real_in_words(number.new_value) + " added\n";
    case Change::removed: return line + real_in_words(number.old_value) + " removed\n";
    default: return line + real_in_words(number.old_value) + " -> " + real_in_words(number.new_value) + '\n';
    }
}

} // namespace

std::string difference_lines(std::span<const Difference> found, bool all)
{
    std::string lines;
    for (const Difference& difference : found) {
        lines += line_of(difference);
        if (all) {
            for (const NumberChange& number : difference.numbers.changes) {
                lines += line_of(difference.numbers, number);
            }
        }
    }
    return lines;
}

std::string difference_summary(std::span<const Difference> found)
{
    std::string lines;
    for (std::size_t begin = 0, end = 0; begin < found.size(); begin = end) {
        std::array<std::size_t, 4> counts{};
        for (; end < found.size() && found[end].section == found[begin].section; ++end) {
            ++counts.at(static_cast<std::size_t>(found[end].change));
        }
        const auto [changed, numbers, added, removed] = counts;
        std::string parts;
        const auto append = [&](std::size_t count, std::string_view name, std::string_view what) {
            if (count > 0) {
                parts += (parts.empty() ? "" : ", ") + counted(count, name) + ' ' + std::string(what);
            }
        };
        append(added, "item", "added");
        append(removed, "item", "removed");
        append(changed, "value", "changed");
        append(numbers, "series", "changed");
        lines += std::string(name_of(found[begin].section)) + ": " + parts + '\n';
    }
    return lines;
}

} // namespace velm
