#include "json_text/json_text.hpp"
#include "model/words.hpp"
#include "model_check/report.hpp"

#include <ostream>

namespace velm {

namespace {

void put_finding(JsonText& json, const Finding& finding)
{
    json.begin_object();
    json.put("code", finding.rule->code);
    json.put("name", finding.rule->name);
    json.put("level", name_of(finding.rule->level));
    json.put("message", finding.message);
    json.put("remedy", finding.what_to_do());
    if (finding.place.line > 0) {
        json.put("line", finding.place.line);
        json.put("column", finding.place.column);
    }
    if (!finding.section.empty()) {
        json.put("section", finding.section);
        json.put_if_any("field", field_in_words(finding));
    }
    json.put_if_any("table", finding.address.table);
    json.put_if_any("row", row_in_words(finding.address));
    json.put_if_any("table_column", finding.address.column);
    json.put_if_any("value", finding.value);
    json.put_if_any("text", finding.text);
    json.end_object();
}

class JsonReport final : public FindingReport {
public:
    explicit JsonReport(std::ostream& out) : out_(out)
    {
        json_.begin_object();
        json_.begin_array("files");
    }

    void begin_file(const std::string& file, bool database) override
    {
        file_ = file;
        database_ = database;
        is_begun_ = false;
    }
    void add(const Finding& finding) override
    {
        begin();
        put_finding(json_, finding);
        json_.flush_to(out_);
    }
    void end_file(const FileFindings& found) override
    {
        begin();
        json_.end_array();
        json_.begin_object("counts");
        for (const auto& [code, count] : found.counts) {
            json_.put(code, count.found);
        }
        json_.end_object();
        json_.put_array("remarks", found.remarks, [&](const std::string& remark) { json_.put("", remark); });
        json_.end_object();
    }
    void end() override
    {
        json_.end_array();
        json_.end_object();
        json_.flush_to(out_);
        out_ << '\n';
    }

private:
    void begin()
    {
        if (!is_begun_) {
            is_begun_ = true;
            json_.begin_object();
            json_.put("file", file_);
            json_.put("kind", database_ ? "model database" : "input file");
            json_.begin_array("findings");
        }
    }

    std::ostream& out_;
    JsonText json_;
    std::string file_;
    bool database_ = false;
    bool is_begun_ = false;
};

} // namespace

std::unique_ptr<FindingReport> json_report(std::ostream& out)
{
    return std::make_unique<JsonReport>(out);
}

} // namespace velm
