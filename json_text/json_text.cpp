#include "json_text/json_text.hpp"

#include "plain_text/plain_text.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <ostream>

namespace velm {

namespace {

/// A text with its quotes. Beside what JSON asks for, all that could steer a terminal is escaped.
std::string quoted(std::string_view text)
{
    std::string json = "\"";
    while (!text.empty()) {
        const Character character = first_character(text);
        const std::size_t bytes = std::max<std::size_t>(character.bytes, 1);
        if (character.bytes == 0) {
            json += '?';
        } else if (is_steering(character.code)) {
            json += "\\u" + hexadecimal(character.code, 4);
        } else {
            json += character.code == U'"' || character.code == U'\\' ? "\\" : "";
            json += text.substr(0, bytes);
        }
        text.remove_prefix(bytes);
    }
    return json + '"';
}

} // namespace

void JsonText::put(std::string_view member, std::string_view value)
{
    name(member);
    const std::string text = quoted(value);
    json_.RawValue(text.data(), text.size(), rapidjson::kStringType);
}

void JsonText::put(std::string_view member, float value)
{
    std::array<char, 32> text{};
    double shown = value;
    std::from_chars(text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr, shown);
    put(member, shown);
}

void JsonText::put(std::string_view member, std::int64_t value)
{
    name(member);
    json_.Int64(value);
}

void JsonText::put_if_any(std::string_view member, std::string_view value)
{
    if (!value.empty()) {
        put(member, value);
    }
}

std::string JsonText::text() const
{
    return std::string(buffer_.GetString(), buffer_.GetSize()) + '\n';
}

void JsonText::flush_to(std::ostream& out)
{
    out.write(buffer_.GetString(), static_cast<std::streamsize>(buffer_.GetSize()));
    buffer_.Clear();
}

} // namespace velm
