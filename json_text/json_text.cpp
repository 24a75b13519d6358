#include "json_text/json_text.hpp"

#include <rapidjson/encodings.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <algorithm>
#include <cmath>

namespace velm {

namespace {

bool is_utf8(std::string_view text)
{
    rapidjson::MemoryStream bytes(text.data(), text.size());
    rapidjson::StringBuffer unused;
    while (bytes.Tell() < text.size()) {
        if (!rapidjson::UTF8<>::Validate(bytes, unused)) {
            return false;
        }
    }
    return true;
}

} // namespace

struct JsonText::Writer {
    rapidjson::StringBuffer buffer;
    rapidjson::PrettyWriter<rapidjson::StringBuffer> json{buffer};

    void put(std::string_view text) { json.String(text.data(), static_cast<rapidjson::SizeType>(text.size())); }
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
    if (is_utf8(value)) {
        writer_->put(value);
        return;
    }
    std::string ascii(value);
    std::replace_if(
        ascii.begin(), ascii.end(), [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; }, '?');
    writer_->put(ascii);
}

void JsonText::put(std::string_view member, std::uint64_t value)
{
    name(member);
    writer_->json.Uint64(value);
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

void JsonText::name(std::string_view member)
{
    if (!member.empty()) {
        writer_->json.Key(member.data(), static_cast<rapidjson::SizeType>(member.size()));
    }
}

} // namespace velm
