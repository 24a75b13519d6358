#include "model/items.hpp"
#include "model/real_in_words.hpp"
#include "model_diff/model_diff.hpp"
#include "model_diff/report.hpp"
#include "report/parts.hpp"
#include "water_balance/series_list.hpp"

#include <algorithm>

namespace velm {
namespace {

/// The address that the page follows: a table and the numbers of a row's key.
std::string address_of(std::string_view table, const RowNumbers& numbers)
{
    std::string address(table);
    for (std::size_t key = 0; key < numbers.size() && numbers.at(key) != 0; ++key) {
        address.append(",").append(std::to_string(numbers.at(key)));
    }
    return address;
}

/// Of a pair also its day.
std::string address_of(const Address& place, const std::vector<SeriesItem>& series)
{
    std::string address = address_of(place.table, place.numbers);
    const auto item = std::find_if(series.begin(), series.end(), [&](const SeriesItem& one) {
        return one.table == place.table && one.owner == place.numbers[0] && one.number == place.numbers[1];
    });
    const auto pair = static_cast<std::size_t>(place.numbers[2]);
    if (item != series.end() && pair >= 1 && pair <= item->series->times.size()) {
        address.append(",").append(real_in_words(item->series->times[pair - 1]));
    }
    return address;
}

std::string place_of(const Finding& finding)
{
    std::string place = place_in_words(finding);
    if (finding.place.line > 0) {
        place = "line " + std::to_string(finding.place.line) + (place.empty() ? "" : ", " + place);
    }
    return place;
}

} // namespace

void put_findings(PageData& data, const Model& model, const FileFindings& findings)
{
    const std::vector<SeriesItem> series = all_series(model);
    data.begin_object("findings");
    data.put_objects("codes", findings.counts, [&](const auto& found) {
        const auto& [code, count] = found;
        data.put_utf8("code", code);
        data.put_utf8("name", count.rule->name);
        data.put_utf8("level", name_of(count.rule->level));
        data.put_utf8("remedy", count.rule->remedy);
        data.put_count("count", count.found);
        data.begin_array("list");
        for (const Finding& finding : findings.findings) {
            if (finding.rule->code == code) {
                data.begin_object();
                data.put_utf8("message", finding.message + (finding.remedy.empty() ? "" : "; " + finding.remedy));
                data.put_utf8("where", place_of(finding));
                data.put_utf8("at", address_of(finding.address, series));
                data.end_object();
            }
        }
        data.end_array();
    });
    data.put_array("remarks", findings.remarks, [&](const std::string& remark) { data.put_utf8({}, remark); });
    data.end_object();
}

namespace {

/// The page lists so many; velm diff lists all.
constexpr std::size_t most_differences = 1000;

/// Where the page shows a difference: a series, or the row of an item.
std::string place_of_difference(const Difference& one)
{
    if (one.new_place.table.empty()) {
        return {};
    }
    const bool series = one.change == Change::numbers && !one.numbers.by_segment;
    return address_of(series ? table_of_values(one.new_place.table) : one.new_place.table, one.new_place.numbers);
}

} // namespace

std::string_view table_of_values(std::string_view item_table)
{
    return series_of(item_table).name;
}

void put_against(PageData& data, const Report& report, std::span<const Difference> found)
{
    if (report.old_model == nullptr) {
        return;
    }
    data.begin_object("against");
    data.put_utf8("file", report.old_file);
    data.put_objects("differences", found.first(std::min(found.size(), most_differences)), [&](const Difference& one) {
        std::string words = difference_lines({&one, 1}, false);
        words.pop_back(); // the line end
        data.put_utf8("words", words);
        data.put_utf8("at", place_of_difference(one));
    });
    data.put_count("count", found.size());
    data.begin_array("segments");
    for (const Difference& one : found) {
        if (one.new_place.table == "segment") {
            data.put_count({}, one.new_place.numbers[0]);
        }
    }
    data.end_array();
    data.end_object();
}

} // namespace velm
