#include "session/request_words.hpp"

#include "headless_host/request.hpp"
#include "session/line_text.hpp"

#include <algorithm>

namespace velm {
namespace {

/// `integer` and `text` give the value of an argument by its number.
template <class Integer, class Text>
std::string words(const HostKey& key, Integer integer, Text text, std::int32_t text_length)
{
    constexpr std::size_t most_characters = 120;
    std::string result(key.name);
    const char* separator = "(";
    for (std::size_t i = 0; i < key.argument_count; ++i) {
        if (key.arguments[i].direction == Direction::out) {
            continue;
        }
        result += separator;
        separator = ", ";
        if (key.arguments[i].kind == Kind::integer) {
            result.append(key.arguments[i].meaning) += ' ' + std::to_string(integer(i));
        } else {
            const std::string_view sent = text(i);
            result += text_as_json(sent.substr(0, std::min(sent.find('\0'), most_characters)));
            result.append(" of length ") += std::to_string(text_length);
        }
    }
    return *separator == '(' ? result : result + ')';
}

} // namespace

std::string request_words(const RecordedExchange& exchange)
{
    return words(
        exchange.key(), [&](std::size_t i) { return exchange.values[i].integer; },
        [&](std::size_t i) -> const std::string& { return exchange.values[i].text; }, exchange.text_lengths[0]);
}

std::string request_words(const velm_host_request& passed)
{
    try {
        const Request request(passed);
        return words(
            host_keys[passed.key_position], [&](std::size_t i) { return request.integer(i); },
            [&](std::size_t i) { return request.text(i); }, passed.text_lengths[0]);
    } catch (const Unanswerable& unsound) {
        return unsound.what();
    }
}

bool is_completion_message(std::string_view fragment)
{
    return fragment.substr(0, fragment.find('\0')) == "File Export is Complete</span></li>";
}

} // namespace velm
