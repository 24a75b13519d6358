#include "json_text/json_text.hpp"

#include "plain_text/plain_text.hpp"

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
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

struct JsonText::Writer {
    rapidjson::StringBuffer buffer;
    rapidjson::PrettyWriter<rapidjson::StringBuffer> json{buffer};

    void put(const std::string& text) { json.RawValue(text.data(), text.size(), rapidjson::kStringType); }
};

JsonText::JsonText() : writer_(std::make_unique<Writer>())
{
    writer_->json.SetIndent(' ', 2);
}

JsonText::~JsonText() = default;

void JsonText::begin_object(std::string_view member)
{
    name(member);
    writer_->json.StartObject();
}

void JsonText::end_object()
{
    writer_->json.EndObject();
}

void JsonText::begin_array(std::string_view member)
{
    name(member);
    writer_->json.StartArray();
}

void JsonText::end_array()
{
    writer_->json.EndArray();
}

void JsonText::put(std::string_view member, std::string_view value)
{
    name(member);
    writer_->put(quoted(value));
}

void JsonText::put_count(std::string_view member, std::uint64_t value)
{
    name(member);
    writer_->json.Uint64(value);
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
    writer_->json.Int64(value);
}

void JsonText::put(std::string_view member, double value)
{
    name(member);
    if (std::isfinite(value)) {
        writer_->json.Double(value);
    } else {
        writer_->json.Null();
    }
}

void JsonText::put_if_any(std::string_view member, std::string_view value)
{
    if (!value.empty()) {
        put(member, value);
    }
}

std::string JsonText::text() const
{
    return std::string(writer_->buffer.GetString(), writer_->buffer.GetSize()) + '\n';
}

void JsonText::flush_to(std::ostream& out)
{
    out.write(writer_->buffer.GetString(), static_cast<std::streamsize>(writer_->buffer.GetSize()));
    writer_->buffer.Clear();
}

void JsonText::name(std::string_view member)
{
    if (!member.empty()) {
        writer_->json.Key(member.data(), static_cast<rapidjson::SizeType>(member.size()));
    }
}

} // namespace velm
