#include "tool/panel_page.hpp"

#include "plain_text/plain_text.hpp"

#include <algorithm>
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

} // namespace

std::string panel_page(std::string_view panel)
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
        "base-uri 'none'; form-action 'none'\">\n<title>VELM export</title>\n"
        "<style>body { font-family: sans-serif; } table { margin: 1em auto; }</style>\n</head>\n<body>\n";
    page += table + "\n<ul>\n";
    page += panel.substr(items_begin);
    page += "\n</ul>\n</body>\n</html>\n";
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
