#include "json_text/json_text.hpp"
#include "model_check/report.hpp"

#include <filesystem>

namespace velm {

namespace {

/// A file's name as a reference of RFC 3986: relative, or with a scheme when it is a whole path.
std::string uri_of(const std::string& file)
{
    constexpr std::string_view kept = "-._~/";
    constexpr std::string_view digits = "0123456789ABCDEF";
    const std::filesystem::path path(file);
    const std::string name = path.generic_string();
    std::string uri = !path.is_absolute() ? "" : name.starts_with('/') ? "file://" : "file:///";
    for (const char character : name) {
        const auto byte = static_cast<unsigned char>(character);
        const bool plain = (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
                           (byte >= 'a' && byte <= 'z') || kept.find(character) != std::string_view::npos;
        if (plain) {
            uri += character;
        } else {
            uri.append(1, '%').append(1, digits[byte >> 4U]).append(1, digits[byte & 0x0FU]);
        }
    }
    return uri;
}

void put_text(JsonText& json, std::string_view name, std::string_view text)
{
    json.begin_object(name);
    json.put("text", text);
    json.end_object();
}

void put_tool(JsonText& json, std::string_view version)
{
    json.begin_object("tool");
    json.begin_object("driver");
    json.put("name", "velm");
    json.put("version", version);
    json.begin_array("rules");
    for (const FindingRule& rule : finding_rules()) {
        json.begin_object();
        json.put("id", rule.code);
        put_text(json, "shortDescription", rule.name);
        put_text(json, "help", rule.remedy);
        json.begin_object("defaultConfiguration");
        json.put("level", name_of(rule.level));
        json.end_object();
        json.end_object();
    }
    json.end_array();
    json.end_object();
    json.end_object();
}

void put_location(JsonText& json, const FileFindings& file, const Finding& finding, const std::string& words)
{
    json.begin_object();
    json.begin_object("physicalLocation");
    json.begin_object("artifactLocation");
    json.put("uri", uri_of(file.file));
    json.end_object();
    if (finding.place.line > 0 && !file.database) {
        json.begin_object("region");
        json.put("startLine", finding.place.line);
        json.put("startColumn", finding.place.column);
        json.end_object();
    }
    json.end_object();
    if (!words.empty()) {
        json.begin_array("logicalLocations");
        json.begin_object();
        json.put("fullyQualifiedName", words);
        json.end_object();
        json.end_array();
    }
    json.end_object();
}

void put_result(JsonText& json, const FileFindings& file, const Finding& finding)
{
    const FindingRule& rule = rule_of(finding.kind);
    const std::string words = place_in_words(finding);
    json.begin_object();
    json.put("ruleId", rule.code);
    json.put("ruleIndex", static_cast<std::uint64_t>(finding.kind));
    json.put("level", name_of(rule.level));
    put_text(json, "message", words.empty() ? finding.message : words + ": " + finding.message);
    json.begin_array("locations");
    put_location(json, file, finding, words);
    json.end_array();
    json.end_object();
}

} // namespace

std::string sarif_report(std::span<const FileFindings> files, std::string_view version)
{
    JsonText json;
    json.begin_object();
    json.put("$schema", "https://json.schemastore.org/sarif-2.1.0.json");
    json.put("version", "2.1.0");
    json.begin_array("runs");
    json.begin_object();
    put_tool(json, version);
    json.put("defaultEncoding", "ISO-8859-1"); // so a column is a byte
    json.put("columnKind", "unicodeCodePoints");
    json.begin_array("results");
    for (const FileFindings& file : files) {
        for (const Finding& finding : file.findings) {
            put_result(json, file, finding);
        }
    }
    json.end_array();
    json.end_object();
    json.end_array();
    json.end_object();
    return json.text();
}

} // namespace velm
