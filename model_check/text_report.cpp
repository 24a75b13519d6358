#include "model_check/report.hpp"
#include "plain_text/plain_text.hpp"

#include <algorithm>
#include <array>

namespace velm {

namespace {

std::string line_of(const FileFindings& file, const Finding& finding)
{
    const FindingRule& rule = rule_of(finding.kind);
    std::string line = printable(file.file);
    if (!file.database && finding.place.line > 0) {
        line += ':' + std::to_string(finding.place.line) + ':' + std::to_string(finding.place.column);
    }
    line +=
        ": " + std::string(name_of(rule.level)) + ' ' + std::string(rule.code) + ' ' + std::string(rule.name) + ": ";
    const std::string place = place_in_words(finding);
    line += place.empty() ? "" : place + ": ";
    return line + finding.message + "; " + std::string(rule.remedy) + '\n';
}

/// Of the kinds that have more findings than are listed.
std::string unlisted(const FileFindings& file)
{
    std::string lines;
    for (std::size_t kind = 0; kind < number_of_finding_kinds; ++kind) {
        const auto listed = std::count_if(file.findings.begin(), file.findings.end(), [&](const Finding& finding) {
            return static_cast<std::size_t>(finding.kind) == kind;
        });
        const std::uint64_t more = file.found.at(kind) - static_cast<std::uint64_t>(listed);
        if (more > 0) {
            const FindingRule& rule = finding_rules()[kind];
            lines += printable(file.file) + ": and " + std::to_string(more) + " more of " + std::string(rule.code) +
                     ' ' + std::string(rule.name) + '\n';
        }
    }
    return lines;
}

void append(std::string& list, const char* before, const std::string& part)
{
    if (!part.empty()) {
        list.append(list.empty() ? "" : ", ").append(before).append(part);
    }
}

} // namespace

std::string place_in_words(const Finding& finding)
{
    std::string words;
    append(words, "", finding.section);
    append(words, "", finding.field);
    append(words, "table ", finding.table);
    append(words, "", finding.row);
    append(words, "column ", finding.column);
    return words;
}

std::string text_report(std::span<const FileFindings> files)
{
    std::string report;
    for (const FileFindings& file : files) {
        for (const Finding& finding : file.findings) {
            report += line_of(file, finding);
        }
        report += unlisted(file);
    }
    return report;
}

std::string counts_in_words(std::span<const FileFindings> files)
{
    std::string words;
    for (const Level level : {Level::error, Level::warning, Level::note}) {
        std::uint64_t count = 0;
        for (const FileFindings& file : files) {
            count += file.count(level);
        }
        append(words, "", std::to_string(count) + ' ' + std::string(name_of(level)) + (count == 1 ? "" : "s"));
    }
    return words;
}

} // namespace velm
