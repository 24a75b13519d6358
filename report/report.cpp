#include "report/report.hpp"

#include "model_check/datum_value.hpp"
#include "report/parts.hpp"
#include "water_balance/run_dates.hpp"

#include <cstdio>
#include <future>
#include <optional>
#include <ostream>

namespace velm {

extern const std::string_view report_page; ///< the page with places for its data

namespace {

std::string as_html(std::string_view text)
{
    std::string html;
    for (const char character : text) {
        switch (character) {
        case '&': html += "&amp;"; break;
        case '<': html += "&lt;"; break;
        default: html += character;
        }
    }
    return html;
}

/// The start as "2023-01-01T00:00:00Z"; empty when it is no date.
std::string start_of(const Model& model)
{
    const RunDates dates(model);
    if (!dates.known()) {
        return {};
    }
    const auto seconds = time_of_day(model.start_time).value_or(std::chrono::seconds{0}).count();
    std::array<char, 16> clock{};
    std::snprintf(clock.data(), clock.size(), "T%02d:%02d:%02dZ", static_cast<int>(seconds / 3600),
                  static_cast<int>(seconds / 60 % 60), static_cast<int>(seconds % 60));
    return dates.date(0) + clock.data();
}

void put_counts(PageData& data, const Model& model)
{
    const auto put = [&](std::string_view what, std::size_t number) {
        data.begin_array();
        data.put_utf8({}, what);
        data.put_count({}, number);
        data.end_array();
    };
    std::size_t flows = 0;
    std::size_t exchanges = 0;
    std::size_t boundaries = 0;
    std::size_t loads = 0;
    for (const FlowField& field : model.flow_fields) {
        flows += field.functions.size();
    }
    for (const ExchangeField& field : model.exchange_fields) {
        exchanges += field.functions.size();
    }
    for (const System& system : model.systems) {
        boundaries += system.boundaries.items.size();
        loads += system.loads.items.size();
    }
    data.begin_array("counts");
    put("segment", model.segments.size());
    put("system", model.systems.size());
    put("flow function", flows);
    put("exchange function", exchanges);
    put("boundary", boundaries);
    put("load", loads);
    data.end_array();
}

} // namespace

void put_head(PageData& data, const Report& report)
{
    data.begin_object("head");
    data.put_utf8("title", report.title);
    data.put_utf8("file", report.file);
    data.put("kind", report.database ? "model database" : "input file");
    data.put_count("bytes", report.bytes);
    data.put_utf8("made", report.made);
    data.put_utf8("program", report.program);
    data.end_object();
    data.begin_object("run");
    data.put_utf8("start", start_of(*report.model));
    data.put("end", double{report.model->julian_end_time});
    data.end_object();
    put_counts(data, *report.model);
}

namespace {

/// With the places in the model, also of what is compared as its export.
std::vector<Difference> differences_of(const Report& report)
{
    if (report.old_model == nullptr) {
        return {};
    }
    if (report.compared_model == nullptr) {
        return differences(*report.old_model, *report.model);
    }
    std::vector<Difference> found = differences(*report.old_model, *report.compared_model);
    const ExportedTypes types(*report.model);
    for (Difference& one : found) {
        one.new_place = types.in_model(one.new_place);
    }
    return found;
}

/// All but what a check finds.
void put_model(PageData& data, const Report& report)
{
    const Model& model = *report.model;
    std::optional<WaterBalance> known;
    if (!flows_are_elsewhere(model)) {
        known.emplace(model);
    }
    const WaterBalance* const balance = known ? &*known : nullptr;
    put_head(data, report);
    put_segments(data, report, balance);
    put_paths(data, model, balance);
    const std::vector<Difference> found = differences_of(report);
    put_series(data, report, balance, found);
    put_balance(data, model, balance);
    put_tables(data, model);
    put_against(data, report, found);
}

} // namespace

void write_report(std::ostream& page, const Report& report)
{
    PageData data;
    std::future<void> shown = std::async(std::launch::async, [&] { put_model(data, report); });
    const FileFindings findings = report.check();
    shown.get();
    put_findings(data, *report.model, findings);

    std::string_view rest = report_page;
    const auto fill = [&](std::string_view place, const std::string& content) {
        const auto at = rest.find(place);
        page << rest.substr(0, at) << content;
        rest.remove_prefix(at + place.size());
    };
    fill("{{title}}", as_html(report.title));
    fill("{{data}}", data.json());
    fill("{{numbers}}", data.packed_numbers());
    page << rest;
}

} // namespace velm
