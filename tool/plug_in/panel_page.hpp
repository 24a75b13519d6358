#pragma once

#include <string>
#include <string_view>

namespace velm {

/// What became of an export. Texts are UTF-8.
struct ExportOutcome {
    std::string model;
    std::string output;
    std::string date;
    std::string word = "failed"; ///< "done", "refused" or "failed"
    std::string reason{};        ///< lines; empty when it is done
};

/// The information panel as a page of its own, below the outcome. `panel` is what the plug-in sent: a version table in
/// <center> and <body> marks, then list items without a list; empty when it was not run.
[[nodiscard]] std::string panel_page(std::string_view panel, const ExportOutcome& outcome);

/// The text of the panel's last list item without its marks; empty when it has none.
[[nodiscard]] std::string last_panel_message(std::string_view panel);

} // namespace velm
