#include "input_file/fields/text_content.hpp"

#include "model/words.hpp"
#include "plain_text/plain_text.hpp"

namespace velm {

std::string text_as_served(std::string_view field)
{
    return std::string(without_end_blanks(field));
}

std::optional<std::string> text_before_nul(std::string_view field)
{
    const std::string content = text_as_served(field);
    const bool ends_in_nul = !content.empty() && content.back() == '\0';
    if (ends_in_nul) {
        std::string text = content.substr(0, content.size() - 1);
        if (text.empty() || text.back() != ' ') { // a blank there would have been cut before the NUL was put
            return text;
        }
    }
    return content.size() == field.size() ? std::optional(content) : std::nullopt;
}

std::string text_before_nul_or_cut(std::string_view beginning)
{
    return text_before_nul(beginning).value_or(std::string(beginning) + '.');
}

bool are_same_but_for_nuls(std::string_view one, std::string_view other)
{
    const auto content = [](std::string_view bytes) {
        std::string text(bytes.substr(0, bytes.find_last_not_of(std::string_view(" \0", 2)) + 1));
        std::erase(text, '\0');
        return text;
    };
    return content(one) == content(other);
}

std::string in_quotes(std::string_view bytes)
{
    return std::string("'").append(printable_latin1(bytes, longest_quote)).append("'");
}

} // namespace velm
