#include "session/json_line.hpp"

#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

#include <cctype>
#include <limits>

namespace velm {

/// Receives the pieces from the parser. When it hands one over, its stream stands at the beginning of a number or a
/// text, and behind every other piece.
struct JsonLine::Splitter : rapidjson::BaseReaderHandler<rapidjson::UTF8<>, JsonLine::Splitter> {
    static constexpr std::size_t most_pieces = 300'000; // two full series have 200,000
    static constexpr int most_nested = 6;

    Splitter(std::vector<Token>& to, rapidjson::InsituStringStream& from) : tokens(to), stream(from) {}

    bool Default() { return add(Piece::other, 0); } // a real
    bool Null() { return add_at(stream.Tell() - std::string_view("ull").size(), Piece::other, 0, {}); }
    bool Bool(bool value)
    {
        const std::string_view behind_the_first = value ? "rue" : "alse";
        return add_at(stream.Tell() - behind_the_first.size(), Piece::other, 0, {});
    }
    bool Int(int value) { return add(Piece::integer, value); }
    bool Uint(unsigned value) { return add(Piece::integer, value); }
    bool Int64(std::int64_t value) { return add(Piece::integer, value); }
    bool String(const char* characters, rapidjson::SizeType size, bool /*copy*/)
    {
        return add(Piece::text, 0, {characters, size});
    }
    bool Key(const char* characters, rapidjson::SizeType size, bool /*copy*/)
    {
        return add(Piece::name, 0, {characters, size});
    }
    bool StartObject() { return add_behind(Piece::open_object, 1); }
    bool EndObject(rapidjson::SizeType /*members*/) { return add_behind(Piece::close_object, -1); }
    bool StartArray() { return add_behind(Piece::open_list, 1); }
    bool EndArray(rapidjson::SizeType /*elements*/) { return add_behind(Piece::close_list, -1); }

    bool add(Piece piece, std::int64_t number, std::string_view text = {})
    {
        return add_at(stream.Tell() + 1, piece, number, text);
    }
    bool add_behind(Piece piece, int nesting)
    {
        nested += nesting;
        return add_at(stream.Tell(), piece, 0, {}) && nested <= most_nested;
    }
    bool add_at(std::size_t column, Piece piece, std::int64_t number, std::string_view text)
    {
        tokens.push_back({piece, static_cast<std::uint32_t>(column), number, text});
        return tokens.size() <= most_pieces;
    }

    std::vector<Token>& tokens;
    rapidjson::InsituStringStream& stream;
    int nested = 0;
};

void JsonLine::split(std::string& line)
{
    tokens_.clear();
    next_ = 0;
    const auto size = static_cast<std::uint32_t>(line.size());
    rapidjson::InsituStringStream stream(line.data());
    Splitter splitter(tokens_, stream);
    rapidjson::Reader reader;
    constexpr unsigned flags = rapidjson::kParseInsituFlag | rapidjson::kParseValidateEncodingFlag;
    const rapidjson::ParseResult result = reader.Parse<flags>(stream, splitter);
    if (result.Code() == rapidjson::kParseErrorTermination) {
        throw LineError(tokens_.back().column, "more values, or more within one another, than any exchange has");
    }
    if (result.IsError()) {
        std::string words = rapidjson::GetParseError_En(result.Code());
        words.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(words.front())));
        words.pop_back(); // the point
        throw LineError(result.Offset() + 1, "not JSON: " + words);
    }
    tokens_.push_back({Piece::end, size + 1, 0, {}});
}

const JsonLine::Token& JsonLine::take(Piece piece, const char* expected)
{
    const Token& token = next();
    if (token.piece != piece) {
        throw LineError(token.column, std::string("expected ") + expected);
    }
    ++next_;
    return token;
}

void JsonLine::member(std::string_view name)
{
    if (!is_member(name)) {
        throw LineError(next().column, "expected the member \"" + std::string(name) + '"');
    }
    ++next_;
}

bool JsonLine::is_member(std::string_view name) const
{
    return next().piece == Piece::name && next().text == name;
}

std::int32_t JsonLine::integer()
{
    using Limits = std::numeric_limits<std::int32_t>;
    const std::int64_t number = take(Piece::integer, "an integer").number;
    if (number < Limits::min() || number > Limits::max()) {
        refuse(std::to_string(number) + " is out of the range of 32-bit integers");
    }
    return static_cast<std::int32_t>(number);
}

std::uint64_t JsonLine::count()
{
    const std::int64_t number = take(Piece::integer, "an integer").number;
    if (number < 0) {
        refuse(std::to_string(number) + " is below 0");
    }
    return static_cast<std::uint64_t>(number);
}

std::string_view JsonLine::text()
{
    return take(Piece::text, "a text").text;
}

void JsonLine::end()
{
    (void)take(Piece::end, "the line's end");
}

} // namespace velm
