#include "json_text/json_text.hpp"
#include "model_diff/number_ranges.hpp"
#include "model_diff/report.hpp"

#include <cstdlib>
#include <ostream>

namespace velm {

namespace {

void put_range(JsonText& json, const NumberChanges& numbers, Change change)
{
    const NumberRange range = NumberRange::of(numbers, change);
    if (range.count == 0) {
        return;
    }
    json.begin_object(name_of(change));
    json.put("count", range.count);
    json.put("first", range.first);
    json.put("last", range.last);
    if (change == Change::changed) {
        json.put("largest_change", std::strtod(range.largest_change_in_words().c_str(), nullptr));
    }
    json.end_object();
}

void put_every(std::ostream& out, JsonText& json, const NumberChanges& numbers)
{
    json.put_objects("every", numbers.changes, [&](const NumberChange& number) {
        json.put("at", number.at);
        if (number.change != Change::added) {
            json.put("old", number.old_value);
        }
        if (number.change != Change::removed) {
            json.put("new", number.new_value);
        }
        json.flush_to(out);
    });
}

void put_difference(std::ostream& out, JsonText& json, const Difference& difference, bool all)
{
    json.put("section", name_of(difference.section));
    json.put("change", name_of(difference.change));
    json.put_if_any("item", difference.item);
    json.put_if_any("field", difference.field);
    if (difference.change == Change::changed) {
        json.put("old", difference.old_value);
        json.put("new", difference.new_value);
    }
    if (difference.change == Change::numbers) {
        const NumberChanges& numbers = difference.numbers;
        json.put("by", numbers.by_segment ? "segment" : "day");
        json.put("in_both", numbers.in_both);
        for (const Change change : {Change::changed, Change::added, Change::removed}) {
            put_range(json, numbers, change);
        }
        if (all) {
            put_every(out, json, numbers);
        }
    }
}

} // namespace

void write_difference_json(std::ostream& out, std::span<const Difference> found, std::string_view old_file,
                           std::string_view new_file, bool form_alone, bool all)
{
    JsonText json;
    json.begin_object();
    json.put("old", old_file);
    json.put("new", new_file);
    json.put("result", !found.empty() ? "different" : form_alone ? "same model in another form" : "same");
    json.put_objects("differences", found, [&](const Difference& one) { put_difference(out, json, one, all); });
    json.end_object();
    json.flush_to(out);
    out << '\n';
}

} // namespace velm
