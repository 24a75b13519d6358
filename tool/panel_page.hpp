#pragma once

#include <string>
#include <string_view>

namespace velm {

/// The information panel as a page of its own. `panel` is what the plug-in sent: a version table in <center> and
/// <body> marks, then list items without a list.
[[nodiscard]] std::string panel_page(std::string_view panel);

/// The text of the panel's last list item without its marks; empty when it has none.
[[nodiscard]] std::string last_panel_message(std::string_view panel);

} // namespace velm
