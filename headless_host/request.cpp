#include "headless_host/request.hpp"

#include "model/words.hpp"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace velm {

namespace {

/// What the soundness of a request is judged by, small enough to stay in the cache.
struct ExpectedForm {
    std::int32_t call_form = 0;
    std::array<std::int32_t, 2> text_lengths{}; ///< 0: no text, or one of any length
};

consteval auto expected_forms()
{
    std::array<ExpectedForm, std::size(host_keys)> forms{};
    for (std::size_t i = 0; i < std::size(host_keys); ++i) {
        forms[i].call_form = static_cast<std::int32_t>(host_keys[i].argument_count);
        std::size_t text = 0;
        for (std::size_t argument = 0; argument < host_keys[i].argument_count; ++argument) {
            if (host_keys[i].arguments[argument].kind == Kind::text) {
                forms[i].text_lengths[text++] = host_keys[i].arguments[argument].text_length;
            }
        }
    }
    return forms;
}

constexpr std::array forms = expected_forms();

constexpr bool fits(std::int32_t passed, std::int32_t expected)
{
    return expected == 0 ? passed >= 0 : passed == expected;
}

[[noreturn]] void refuse_unknown_key(const velm_host_request& passed)
{
    const std::string_view key(passed.key, static_cast<std::size_t>(std::max(passed.key_length, 0)));
    const bool ended = passed.key_length >= 1 && passed.key[passed.key_length - 1] == '\0';
    throw Unanswerable("unknown key " + quoted_text(key.substr(0, 32)) + " of length " +
                       std::to_string(passed.key_length) + (ended ? "" : ", not ended by a NUL"));
}

[[noreturn]] void refuse_call_form(const velm_host_request& passed, const ExpectedForm& expected)
{
    throw Unanswerable(std::string(host_keys[passed.key_position].name) + ": asked through host_exchange_" +
                       std::to_string(passed.call_form) + ", its call form is host_exchange_" +
                       std::to_string(expected.call_form));
}

[[noreturn]] void refuse_text_length(const velm_host_request& passed, const ExpectedForm& expected, std::size_t text)
{
    throw Unanswerable(std::string(host_keys[passed.key_position].name) + ": length " +
                       std::to_string(passed.text_lengths[text]) + " passed for text " + std::to_string(text + 1) +
                       ", its length is " +
                       (expected.text_lengths[text] == 0 ? "0 or more" : std::to_string(expected.text_lengths[text])));
}

} // namespace

Request::Request(const velm_host_request& passed) : passed_(passed)
{
    if (passed.key_position == velm_unknown_key) {
        refuse_unknown_key(passed);
    }
    const ExpectedForm& expected = forms[static_cast<std::size_t>(passed.key_position)];
    if (passed.call_form != expected.call_form) {
        refuse_call_form(passed, expected);
    }
    for (std::size_t text = 0; text < expected.text_lengths.size(); ++text) {
        if (!fits(passed.text_lengths[text], expected.text_lengths[text])) {
            refuse_text_length(passed, expected, text);
        }
    }
}

std::string_view Request::text(std::size_t argument) const
{
    const std::string_view field(static_cast<const char*>(passed_.values[argument]),
                                 static_cast<std::size_t>(passed_.text_lengths[0]));
    return field.substr(0, field.find('\0'));
}

void Request::put(std::size_t argument, const std::string& text) const
{
    const Argument& declared = host_keys[passed_.key_position].arguments[argument];
    const auto length = static_cast<std::size_t>(declared.text_length);
    if (text.size() > length) {
        unanswerable("the model's " + std::string(declared.meaning) + " has " + std::to_string(text.size()) +
                     " characters, the field " + std::to_string(length));
    }
    auto* const field = static_cast<char*>(passed_.values[argument]);
    std::fill(std::copy(text.begin(), text.end(), field), field + length, ' ');
}

void Request::put_series(std::size_t argument, const std::vector<float>& series) const
{
    if (series.size() > series_entries) {
        unanswerable("the series has " + counted(series.size(), "time pair") + ", the plug-in's tables hold " +
                     std::to_string(series_entries));
    }
    std::copy(series.begin(), series.end(), static_cast<float*>(passed_.values[argument]));
}

std::string Request::in_words() const
{
    const HostKey& key = host_keys[key_position()];
    std::string words(key.name);
    const char* separator = "(";
    for (std::size_t i = 0; i < key.argument_count; ++i) {
        if (key.arguments[i].direction == Direction::in) {
            words += std::exchange(separator, ", ");
            words += key.arguments[i].kind == Kind::integer
                         ? std::string(key.arguments[i].meaning) + ' ' + std::to_string(integer(i))
                         : quoted_text(text(i)) + " of length " + std::to_string(passed_.text_lengths[0]);
        }
    }
    return *separator == '(' ? words : words + ')';
}

void Request::unanswerable(const std::string& reason) const
{
    throw Unanswerable(in_words() + ": " + reason);
}

void Request::no_such_item(std::size_t count, std::size_t argument) const
{
    const auto& arguments = host_keys[key_position()].arguments;
    const bool is_outermost = argument == 0 || arguments[argument - 1].direction == Direction::out;
    const std::string_view before = is_outermost ? "model" : arguments[argument - 1].meaning;
    const std::string owner(before == "ISC number" ? "type" : before);
    const std::string item(arguments[argument].meaning);
    unanswerable("the " + owner + " has " + (item == "segment" && !is_outermost ? "values for " : "") +
                 counted(count, item));
}

std::string quoted_text(std::string_view text)
{
    constexpr std::size_t most_characters = 120;
    std::string words = "\"";
    for (const char character : text.substr(0, std::min(text.find('\0'), most_characters))) {
        words += character >= ' ' && character <= '~' ? character : '?';
    }
    return words + '"';
}

std::string request_in_words(const velm_host_request& passed)
{
    try {
        return Request(passed).in_words();
    } catch (const Unanswerable& unsound) {
        return unsound.what();
    }
}

} // namespace velm
