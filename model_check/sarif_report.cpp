#include "json_text/json_text.hpp"
#include "model_check/report.hpp"
#include "model_check/rules.hpp"
#include "plain_text/plain_text.hpp"

#include <algorithm>
#include <filesystem>
#include <ostream>

namespace velm {

namespace {

/// A file's name as a reference of RFC 3986: relative, or with a scheme when it is a whole path.
std::string uri_of(const std::string& file)
{
    constexpr std::string_view kept = "-._~/";
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
            uri += '%' + hexadecimal(byte, 2);
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
    json.put_objects("rules", finding_rules(), [&](const FindingRule* rule) {
        json.put("id", rule->code);
        put_text(json, "shortDescription", rule->name);
        put_text(json, "help", rule->remedy);
        json.begin_object("defaultConfiguration");
        json.put("level", name_of(rule->level));
        json.end_object();
    });
    json.end_object();
    json.end_object();
}

void put_location(JsonText& json, const std::string& uri, const Finding& finding, const std::string& words)
{
    json.begin_object();
    json.begin_object("physicalLocation");
    json.begin_object("artifactLocation");
    json.put("uri", uri);
    json.end_object();
    if (finding.place.line > 0) {
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

std::uint64_t index_of(const FindingRule& rule)
{
    const auto rules = finding_rules();
    return static_cast<std::uint64_t>(std::ranges::find(rules, rule.code, &FindingRule::code) - rules.begin());
}

class SarifReport final : public FindingReport {
public:
    SarifReport(std::ostream& out, std::string_view version) : out_(out)
    {
        json_.begin_object();
        json_.put("$schema", "https://json.schemastore.org/sarif-2.1.0.json");
        json_.put("version", "2.1.0");
        json_.begin_array("runs");
        json_.begin_object();
        put_tool(json_, version);
        json_.put("defaultEncoding", "ISO-8859-1"); // so a column is a byte
        json_.put("columnKind", "unicodeCodePoints");
        json_.begin_array("results");
    }

    void begin_file(const std::string& file, bool /*database*/) override { uri_ = uri_of(file); }
    void add(const Finding& finding) override
    {
        const std::string words = place_in_words(finding);
        json_.begin_object();
        json_.put("ruleId", finding.rule->code);
        json_.put("ruleIndex", index_of(*finding.rule));
        json_.put("level", name_of(finding.rule->level));
        put_text(json_, "message", words.empty() ? finding.message : words + ": " + finding.message);
        json_.begin_array("locations");
        put_location(json_, uri_, finding, words);
        json_.end_array();
        json_.end_object();
        json_.flush_to(out_);
    }
    void end_file(const FileFindings& /*found*/) override {}
    void end() override
    {
        json_.end_array();
        json_.end_object();
        json_.end_array();
        json_.end_object();
        json_.flush_to(out_);
        out_ << '\n';
    }

private:
    std::ostream& out_;
    JsonText json_;
    std::string uri_;
};

} // namespace

std::unique_ptr<FindingReport> sarif_report(std::ostream& out, std::string_view version)
{
    return std::make_unique<SarifReport>(out, version);
}

} // namespace velm
