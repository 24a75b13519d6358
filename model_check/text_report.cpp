#include "model_check/report.hpp"
#include "plain_text/plain_text.hpp"

#include <ostream>

namespace velm {

namespace {

class TextReport final : public FindingReport {
public:
    TextReport(std::ostream& out, Level least) : out_(out), least_(least) {}

    void begin_file(const std::string& file, bool /*database*/) override { file_ = printable(file); }
    void add(const Finding& finding) override
    {
        if (finding.rule->level >= least_) {
            out_ << line_of(file_, finding) << '\n';
        }
    }
    void end_file(const FileFindings& found) override
    {
        for (const auto& [code, count] : found.counts) {
            if (count.found > count.listed && count.rule->level >= least_) {
                const std::string more = std::to_string(count.found - count.listed);
                out_ << file_ << ": " << (count.listed == 0 ? more + " of " : "and " + more + " more of ") << code
                     << ' ' << count.rule->name << '\n';
            }
        }
    }

private:
    std::ostream& out_;
    Level least_;
    std::string file_;
};

} // namespace

std::string line_of(std::string_view file, const Finding& finding)
{
    std::string line(file);
    if (finding.place.line > 0) {
        line += ':' + std::to_string(finding.place.line) + ':' + std::to_string(finding.place.column);
    }
    const FindingRule& rule = *finding.rule;
    line.append(": ").append(name_of(rule.level)).append(" ").append(rule.code).append(" ").append(rule.name);
    return line + ": " + in_words(finding);
}

std::unique_ptr<FindingReport> text_report(std::ostream& out, Level least)
{
    return std::make_unique<TextReport>(out, least);
}

std::string counts_in_words(std::span<const FileFindings> files)
{
    std::string words;
    for (const Level level : {Level::error, Level::warning, Level::note}) {
        std::uint64_t count = 0;
        for (const FileFindings& file : files) {
            count += file.count(level);
        }
        words += (words.empty() ? "" : ", ") + std::to_string(count) + ' ' + std::string(name_of(level)) +
                 (count == 1 ? "" : "s");
    }
    return words;
}

} // namespace velm
