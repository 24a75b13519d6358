#include "json_text/json_text.hpp"
#include "model_check/report.hpp"

namespace velm {

namespace {

void put_finding(JsonText& json, const Finding& finding)
{
    const FindingRule& rule = rule_of(finding.kind);
    json.begin_object();
    json.put("code", rule.code);
    json.put("name", rule.name);
    json.put("level", name_of(rule.level));
    json.put("message", finding.message);
    json.put("remedy", rule.remedy);
    if (finding.place.line > 0) {
        json.put("line", finding.place.line);
        json.put("column", finding.place.column);
    }
    json.put_if_any("section", finding.section);
    json.put_if_any("field", finding.field);
    json.put_if_any("table", finding.table);
    json.put_if_any("row", finding.row);
    json.put_if_any("table_column", finding.column);
    json.put_if_any("value", finding.value);
    json.put_if_any("text", finding.text);
    json.end_object();
}

void put_file(JsonText& json, const FileFindings& file)
{
    json.begin_object();
    json.put("file", file.file);
    json.put("kind", file.database ? "model database" : "input file");
    json.begin_object("counts");
    for (std::size_t kind = 0; kind < number_of_finding_kinds; ++kind) {
        if (file.found.at(kind) > 0) {
            json.put(finding_rules()[kind].code, file.found.at(kind));
        }
    }
    json.end_object();
    json.begin_array("findings");
    for (const Finding& finding : file.findings) {
        put_finding(json, finding);
    }
    json.end_array();
    json.end_object();
}

} // namespace

std::string json_report(std::span<const FileFindings> files)
{
    JsonText json;
    json.begin_object();
    json.begin_array("files");
    for (const FileFindings& file : files) {
        put_file(json, file);
    }
    json.end_array();
    json.end_object();
    return json.text();
}

} // namespace velm
