#include "headless_host/request.hpp"

#include <algorithm>
#include <array>
#include <iterator>

namespace velm {

namespace {

/// What the soundness of a request is judged by, small enough to stay in the cache.
struct Passing {
    std::int32_t call_form = 0;
    std::array<std::int32_t, 2> text_lengths{}; ///< 0: no text, or one of any length
};

consteval auto passing_of_keys()
{
    std::array<Passing, std::size(host_keys)> passings{};
    for (std::size_t i = 0; i < std::size(host_keys); ++i) {
        passings[i].call_form = static_cast<std::int32_t>(host_keys[i].argument_count);
        std::size_t text = 0;
        for (std::size_t argument = 0; argument < host_keys[i].argument_count; ++argument) {
            if (host_keys[i].arguments[argument].kind == Kind::text) {
                passings[i].text_lengths[text++] = host_keys[i].arguments[argument].text_length;
            }
        }
    }
    return passings;
}

constexpr std::array passings = passing_of_keys();

constexpr bool fits(std::int32_t passed, std::int32_t expected)
{
    return expected == 0 ? passed >= 0 : passed == expected;
}

/// Characters of the key up to its NUL; what is not printable ASCII becomes a question mark.
std::string printable(const velm_host_request& passed)
{
    constexpr std::int32_t most_characters = 32;
    std::string name;
    for (std::int32_t i = 0; i < std::min(passed.key_length, most_characters) && passed.key[i] != '\0'; ++i) {
        name += passed.key[i] >= ' ' && passed.key[i] <= '~' ? passed.key[i] : '?';
    }
    return name;
}

[[noreturn]] void refuse_unknown_key(const velm_host_request& passed)
{
    const bool ended = passed.key_length >= 1 && passed.key[passed.key_length - 1] == '\0';
    throw Unanswerable("unknown key \"" + printable(passed) + "\" of length " + std::to_string(passed.key_length) +
                       (ended ? "" : ", not ended by a NUL"));
}

[[noreturn]] void refuse_call_form(const velm_host_request& passed, const Passing& expected)
{
    throw Unanswerable(std::string(host_keys[passed.key_position].name) + ": asked through host_exchange_" +
                       std::to_string(passed.call_form) + ", its call form is host_exchange_" +
                       std::to_string(expected.call_form));
}

[[noreturn]] void refuse_text_length(const velm_host_request& passed, const Passing& expected, std::size_t text)
{
    throw Unanswerable(std::string(host_keys[passed.key_position].name) + ": length " +
                       std::to_string(passed.text_lengths[text]) + " passed for text " + std::to_string(text + 1) +
                       ", its length is " +
                       (expected.text_lengths[text] == 0 ? "0 or more" : std::to_string(expected.text_lengths[text])));
}

/// "GVOLUME(segment 41)"
std::string in_words(const Request& request)
{
    const HostKey& key = host_keys[request.key_position()];
    std::string words(key.name);
    const char* separator = "(";
    for (std::size_t i = 0; i < key.argument_count; ++i) {
        if (key.arguments[i].direction == Direction::in && key.arguments[i].kind == Kind::integer) {
            words += separator;
            words += key.arguments[i].meaning;
            words += ' ' + std::to_string(request.integer(i));
            separator = ", ";
        }
    }
    return *separator == '(' ? words : words + ')';
}

/// "no boundaries", "1 boundary", "2 boundaries"
std::string counted(std::size_t count, const std::string& item)
{
    if (count == 1) {
        return "1 " + item;
    }
    const std::string plural = item.ends_with('y') ? item.substr(0, item.size() - 1) + "ies" : item + 's';
    return (count == 0 ? "no" : std::to_string(count)) + ' ' + plural;
}

} // namespace

Request::Request(const velm_host_request& passed) : passed_(passed)
{
    if (passed.key_position == velm_unknown_key) {
        refuse_unknown_key(passed);
    }
    const Passing& expected = passings[static_cast<std::size_t>(passed.key_position)];
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

void Request::put_text(std::size_t argument, std::string_view text) const
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

void Request::unanswerable(const std::string& reason) const
{
    throw Unanswerable(in_words(*this) + ": " + reason);
}

void Request::no_such_item(std::size_t count, const char* owner, const char* item) const
{
    unanswerable(std::string(owner) + ' ' + counted(count, item));
}

} // namespace velm
