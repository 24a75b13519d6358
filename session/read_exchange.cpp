#include "session/read_exchange.hpp"

#include "headless_host/key_lookup.hpp"
#include "headless_host/request.hpp"

#include <algorithm>
#include <span>
#include <string>

namespace velm {
namespace {

using Value = SessionLine::Value;

std::int32_t key_position(SessionLine& line)
{
    const Value& name = line.member("key");
    const std::string text = line.text(name);
    const auto length = static_cast<std::int32_t>(std::min<std::size_t>(text.size() + 1, longest_key_length + 1));
    const std::int32_t position = find_key(text.c_str(), length);
    if (position == velm_unknown_key) {
        line.refuse("the host's contract has no such key", name);
    }
    return position;
}

void read_lengths(SessionLine& line, RecordedExchange& exchange)
{
    const HostKey& key = exchange.key();
    const auto texts = static_cast<rapidjson::SizeType>(std::ranges::count(key.arguments, Kind::text, &Argument::kind));
    const Value& lengths = line.list("lengths", 1 + texts);
    if (line.integer(lengths[0]) != key.length()) {
        line.refuse("expected " + std::to_string(key.length()), lengths[0]);
    }
    exchange.text_lengths = {};
    rapidjson::SizeType text = 0;
    for (std::size_t i = 0; i < key.argument_count; ++i) {
        if (key.arguments[i].kind == Kind::text) {
            std::int32_t& length = exchange.text_lengths[text];
            length = line.integer(lengths[++text]);
            const bool fits =
                key.arguments[i].direction == Direction::in ? length >= 0 : length == key.arguments[i].text_length;
            if (!fits) {
                line.refuse("no length of this text", lengths[text]);
            }
        }
    }
}

std::string read_text(const SessionLine& line, const Value& value, std::int32_t length)
{
    const std::size_t size = std::min(static_cast<std::size_t>(length), longest_recorded_text);
    std::string text = line.text(value);
    if (text.size() != size) {
        line.refuse("expected a text of " + std::to_string(size) + " characters, this one has " +
                        std::to_string(text.size()),
                    value);
    }
    return text;
}

std::string number_bytes(auto number)
{
    return {reinterpret_cast<const char*>(&number), sizeof number};
}

std::string read_series(const SessionLine& line, const Value& list)
{
    if (!list.IsArray() || list.Size() > Request::series_entries) {
        line.refuse("expected a list of at most " + std::to_string(Request::series_entries) + " reals", list);
    }
    std::string series;
    for (const Value& value : list.GetArray()) {
        series += number_bytes(line.real(value));
    }
    return series;
}

void read_values(SessionLine& line, const char* member, const RecordedExchange& exchange, ValueBytes& values)
{
    const Direction direction = std::string_view(member) == "out" ? Direction::out : Direction::in;
    const auto& arguments = exchange.key().arguments;
    const std::span of_key(arguments.data(), exchange.key().argument_count);
    const Value& list = line.list(
        member, static_cast<rapidjson::SizeType>(std::ranges::count(of_key, direction, &Argument::direction)));
    const std::int32_t* length = exchange.text_lengths.data();
    for (rapidjson::SizeType i = 0, next = 0; i < of_key.size(); ++i) {
        if (arguments[i].direction != direction) {
            continue;
        }
        const Value& value = list[next++];
        switch (arguments[i].kind) {
        case Kind::integer: values[i] = number_bytes(line.integer(value)); break;
        case Kind::real: values[i] = number_bytes(line.real(value)); break;
        case Kind::series: values[i] = read_series(line, value); break;
        case Kind::text: // what the host left as it was is for people: the text is whole
            if (direction == Direction::out && !(value.IsObject() && value.HasMember("text"))) {
                line.refuse("expected an object with the member \"text\"", value);
            }
            values[i] = read_text(line, direction == Direction::in ? value : value["text"], *length++);
        }
    }
}

} // namespace

void read_exchange(SessionLine& line, RecordedExchange& exchange)
{
    line.expect_count("exchange", exchange.number + 1);
    exchange.key_position = key_position(line);
    line.expect_count("form", exchange.key().argument_count);
    read_lengths(line, exchange);
    read_values(line, "in", exchange, exchange.values);
    read_values(line, "out", exchange, exchange.values);
    exchange.in_after.reset();
    if (line.has("in_after")) {
        read_values(line, "in_after", exchange, exchange.in_after.emplace());
    }
    line.end();
    ++exchange.number;
}

} // namespace velm
