#include "session/session_line.hpp"

#include <rapidjson/error/en.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cctype>
#include <charconv>
#include <system_error>

namespace velm {
namespace {

/// A value as it stands in the line, cut to what fits in a message.
std::string in_words(const rapidjson::Value& value)
{
    constexpr std::size_t most_characters = 40;
    if (value.IsObject() || value.IsArray()) {
        return value.IsObject() ? "an object" : "a list of " + std::to_string(value.Size());
    }
    rapidjson::StringBuffer text;
    rapidjson::Writer<rapidjson::StringBuffer, rapidjson::UTF8<>, rapidjson::ASCII<>> writer(text);
    value.Accept(writer);
    const std::string_view words(text.GetString(), text.GetSize());
    return words.size() <= most_characters ? std::string(words) : std::string(words.substr(0, most_characters)) + "...";
}

} // namespace

SessionLine::SessionLine(std::string_view line) : line_(line)
{
    constexpr unsigned flags = rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag; // any depth
    json_.Parse<flags>(line.data(), line.size());
    if (json_.HasParseError()) {
        std::string words = rapidjson::GetParseError_En(json_.GetParseError());
        words.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(words.front())));
        words.pop_back(); // the point
        throw LineError(json_.GetErrorOffset() + 1, "not JSON: " + words);
    }
    if (!json_.IsObject()) {
        throw LineError(1, "expected an object, found " + in_words(json_));
    }
}

const SessionLine::Value& SessionLine::member(const char* name)
{
    if (!json_.HasMember(name)) {
        throw LineError(line_.size() + 1, std::string("there is no member \"") + name + '"');
    }
    member_ = name;
    ++taken_;
    return json_[name];
}

const SessionLine::Value& SessionLine::list(const char* name, rapidjson::SizeType size)
{
    const Value& value = member(name);
    if (!value.IsArray() || value.Size() != size) {
        refuse("expected a list of " + std::to_string(size), value);
    }
    return value;
}

void SessionLine::expect_count(const char* name, std::uint64_t number)
{
    const Value& value = member(name);
    if (!value.IsUint64() || value.GetUint64() != number) {
        refuse("expected " + std::to_string(number), value);
    }
}

void SessionLine::end() const
{
    if (json_.MemberCount() != taken_) {
        throw LineError(line_.size() + 1, "there are " + std::to_string(json_.MemberCount()) +
                                              " members, of which only " + std::to_string(taken_) + " belong here");
    }
}

std::int32_t SessionLine::integer(const Value& value) const
{
    if (!value.IsInt()) {
        refuse("expected an integer of 32 bits", value);
    }
    return value.GetInt();
}

float SessionLine::real(const Value& value) const
{
    float real = 0;
    const std::string_view text = value.IsString() ? std::string_view(value.GetString(), value.GetStringLength()) : "";
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), real);
    if (stop != text.data() + text.size() || error != std::errc()) {
        refuse("expected a single-precision real as a text, such as \"1500\"", value);
    }
    return real;
}

std::string SessionLine::text(const Value& value) const
{
    if (!value.IsString()) {
        refuse("expected a text", value);
    }
    std::string bytes;
    for (const char *at = value.GetString(), *end = at + value.GetStringLength(); at != end; ++at) {
        const auto code = static_cast<unsigned char>(*at); // valid UTF-8: the parser has seen to that
        if (code > 0xC3) {
            refuse("a text has characters up to U+00FF, each for one byte", value);
        }
        bytes += code < 0x80 ? *at : static_cast<char>((code & 3U) << 6U | (static_cast<unsigned char>(*++at) & 0x3FU));
    }
    return bytes;
}

void SessionLine::refuse(const std::string& words, const Value& found) const
{
    const std::string name = '"' + member_ + '"'; // before a colon it stands nowhere else: texts escape their quotes
    throw LineError(line_.find(name + ':') + 1, name + ": " + words + ", found " + in_words(found));
}

} // namespace velm
