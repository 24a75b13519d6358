#include "tool/plug_in/panel_page.hpp"

#include "plain_text/plain_text.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>

namespace velm {
namespace {

constexpr std::string_view item_mark = "<li>";

void remove_all(std::string& text, std::string_view mark)
{
    for (auto at = text.find(mark); at != std::string::npos; at = text.find(mark, at)) {
        text.erase(at, mark.size());
    }
}

/// With references for all that is no ASCII, so that it reads the same in any encoding.
std::string as_html(std::string_view utf8)
{
    std::string html;
    while (!utf8.empty()) {
        const Character character = first_character(utf8);
        const auto code = character.bytes == 0 ? char32_t{0xFFFD} : character.code;
        if (code < 0x80 && code != '<' && code != '&') {
            html += static_cast<char>(code);
        } else {
            html += "&#" + std::to_string(static_cast<std::uint32_t>(code)) + ";";
        }
        utf8.remove_prefix(std::max<std::size_t>(character.bytes, 1));
    }
    return html;
}

std::string outcome_part(const ExportOutcome& outcome)
{
    const std::string heading = "Export of " + as_html(outcome.model) + ": " + outcome.word;
    return "<title>" + heading +
           "</title>\n<style>body { font-family: sans-serif; margin: 1em auto; max-width: 50em; }\n"
           "h1 { font-size: 1.4em; border-left: .4em solid; padding-left: .4em; }\n"
           ".done { border-color: #1b7837; } .refused { border-color: #b35806; } .failed { border-color: #b3261e; }\n"
           "pre { white-space: pre-wrap; }</style>\n</head>\n<body>\n<h1 class=\"" +
           outcome.word + "\">" + heading + "</h1>\n<p>" + as_html(outcome.output) + ", " + outcome.date + "</p>\n" +
           (outcome.reason.empty() ? "" : "<pre>" + as_html(outcome.reason) + "</pre>\n");
}

} // namespace

std::string panel_page(std::string_view panel, const ExportOutcome& outcome)
{
    const auto items_begin = std::min(panel.find(item_mark), panel.size());
    std::string table(panel.substr(0, items_begin));
    for (const std::string_view mark : {"<center>", "</center>", "</Center>", "<body>", "</body>"}) {
        remove_all(table, mark);
    }
    std::string page = "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"";
    // names of files and branches come in the system's encoding, which may be UTF-8 or one byte a character
    page += is_utf8(panel) ? "utf-8" : "iso-8859-1";
    page +=
        "\">\n<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src 'unsafe-inline'; "
        "base-uri 'none'; form-action 'none'\">\n";
    page += outcome_part(outcome);
    if (panel.empty()) {
        page += "<p>The plug-in said nothing.</p>\n";
    } else {
        page += table + "\n<ul>\n" + std::string(panel.substr(items_begin)) + "\n</ul>\n";
    }
    page += "</body>\n</html>\n";
    return page;
}

std::string last_panel_message(std::string_view panel)
{
    const auto last = panel.rfind(item_mark);
    std::string text;
    bool in_mark = false;
    for (const char character : panel.substr(std::min(last, panel.size()))) {
        if (character == '<' || character == '>') {
            in_mark = character == '<';
        } else if (!in_mark) {
            text += character;
        }
    }
    return text;
}

} // namespace velm
