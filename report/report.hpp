#pragma once

#include "model/model.hpp"
#include "model_check/file_findings.hpp"
#include "model_store/model_store.hpp"

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace velm {

/// What a report is made of. The models outlive the call that writes it.
struct Report {
    const Model* model = nullptr;
    std::string title; ///< UTF-8, as are the texts below
    std::string file;  ///< the model's, as it was named
    bool database = false;
    std::uint64_t bytes = 0;             ///< size of the file
    std::string made;                    ///< date and time
    std::string program;                 ///< name and version
    std::function<FileFindings()> check; ///< of the model; called once, while most of the page is made
    std::vector<SegmentPlace> places;    ///< where a modeller draws segments; may be of some, or none

    const Model* old_model = nullptr;      ///< what it is compared with; null for nothing
    const Model* compared_model = nullptr; ///< the model as it is compared; null for as it is
    std::string old_file;
};

/// Writes one page that shows the model: HTML that needs nothing else and asks nothing of any network. docs/report.md
/// describes it. The same report gives the same bytes.
void write_report(std::ostream& page, const Report& report);

} // namespace velm
