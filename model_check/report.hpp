#pragma once

#include "model_check/file_findings.hpp"

#include <iosfwd>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace velm {

/// Writes findings as they come, file after file.
class FindingReport {
public:
    virtual ~FindingReport() = default;
    FindingReport& operator=(FindingReport&&) = delete; // neither copied nor moved

    /// What follows is of this file. A file that is not ended has no part in the report.
    virtual void begin_file(const std::string& file, bool database) = 0;
    virtual void add(const Finding& finding) = 0;
    /// Adds what is counted but not listed.
    virtual void end_file(const FileFindings& found) = 0;
    virtual void end() {}
};

/// A line for each finding: "river.inp:12:1: error V101 field overflow: segments, volume: what is wrong; a remedy".
/// Of levels below `least`, nothing; of a rule of which none is listed, how many there are.
[[nodiscard]] std::unique_ptr<FindingReport> text_report(std::ostream& out, Level least = Level::note);

/// One JSON object; docs/findings.md describes it.
[[nodiscard]] std::unique_ptr<FindingReport> json_report(std::ostream& out);

/// A log in the Static Analysis Results Interchange Format 2.1.0. `version` is this program's.
[[nodiscard]] std::unique_ptr<FindingReport> sarif_report(std::ostream& out, std::string_view version);

/// A finding on one line, without a line end, as the text has it.
[[nodiscard]] std::string line_of(std::string_view file, const Finding& finding);

/// "3 errors, 1 warning, 12 notes"
[[nodiscard]] std::string counts_in_words(std::span<const FileFindings> files);

} // namespace velm
