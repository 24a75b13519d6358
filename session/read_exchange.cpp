#include "session/read_exchange.hpp"

#include "headless_host/key_lookup.hpp"
#include "headless_host/request.hpp"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <string>
#include <system_error>

namespace velm {
namespace {

std::int32_t read_key(JsonLine& line)
{
    const std::string name(line.text());
    const std::int32_t position = find_key(
        name.c_str(), static_cast<std::int32_t>(std::min<std::size_t>(name.size() + 1, longest_key_length + 1)));
    if (position == velm_unknown_key) {
        line.refuse("the host's contract has no such key");
    }
    return position;
}

void read_number(JsonLine& line, std::int32_t expected, const char* meaning)
{
    if (const std::int32_t number = line.integer(); number != expected) {
        line.refuse(std::string(meaning) + " is " + std::to_string(expected) + ", not " + std::to_string(number));
    }
}

bool has_text_of_any_length(const HostKey& key)
{
    return std::ranges::any_of(key.arguments, [](const Argument& argument) {
        return argument.kind == Kind::text && argument.direction == Direction::in;
    });
}

/// Both members are left out when they are the key's own; a text that is sent has a length of its own each time.
void read_form_and_lengths(JsonLine& line, RecordedExchange& exchange)
{
    const HostKey& key = exchange.key();
    const bool are_given = line.is_member("form") || has_text_of_any_length(key);
    if (are_given) {
        line.member("form");
        read_number(line, static_cast<std::int32_t>(key.argument_count), "the call form of this key");
        line.member("lengths");
        line.open_list();
        read_number(line, key.length(), "the length of this key");
    }
    exchange.text_lengths = {};
    std::size_t text = 0;
    for (std::size_t i = 0; i < key.argument_count; ++i) {
        if (key.arguments[i].kind != Kind::text) {
            continue;
        }
        std::int32_t& length = exchange.text_lengths[text++];
        length = key.arguments[i].text_length;
        if (key.arguments[i].direction == Direction::in) {
            length = line.integer();
            if (length < 0) {
                line.refuse("the length of a text is 0 or more");
            }
        } else if (are_given) {
            read_number(line, length, "the length of this text");
        }
    }
    if (are_given) {
        line.close_list();
    }
}

/// One byte for each character.
void read_bytes(JsonLine& line, std::size_t size, std::string& bytes)
{
    const std::string_view utf8 = line.text(); // valid: the parser has seen to that
    bytes.clear();
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto code = static_cast<unsigned char>(utf8[i]);
        if (code > 0xC3) {
            line.refuse("a text has characters up to U+00FF, each for one byte");
        }
        const bool in_two = code >= 0x80;
        bytes +=
            in_two ? static_cast<char>((code & 3U) << 6U | (static_cast<unsigned char>(utf8[++i]) & 0x3FU)) : utf8[i];
    }
    if (bytes.size() != size) {
        line.refuse("this text has " + std::to_string(size) + " characters, not " + std::to_string(bytes.size()));
    }
}

/// Must be what is in the text: ranges from first to last, in order, neither touching nor beyond `size`.
void read_ranges(JsonLine& line, std::size_t size)
{
    std::int64_t last = -1;
    line.open_list();
    while (!line.is_list_end()) {
        line.open_list();
        const std::int32_t first = line.integer();
        if (first < last + 2) {
            line.refuse("ranges count from 1, ascend and do not touch");
        }
        last = line.integer();
        if (last < first || last > static_cast<std::int64_t>(size)) {
            line.refuse("a range ends in the text and not before it begins");
        }
        line.close_list();
    }
    line.close_list();
}

/// "1500 44bb8000"
float read_real(JsonLine& line)
{
    constexpr std::size_t digits = 8;
    const std::string_view text = line.text();
    const char* const end = text.data() + text.size();
    float value = 0;
    std::uint32_t bits = 0;
    const auto decimals = std::from_chars(text.data(), end, value);
    const char* const hexadecimal = decimals.ptr + 1;
    if (decimals.ec != std::errc() || end - decimals.ptr != 1 + static_cast<std::ptrdiff_t>(digits) ||
        *decimals.ptr != ' ' || std::from_chars(hexadecimal, end, bits, 16).ptr != end) {
        line.refuse("expected a single-precision real and its bits, such as \"1500 44bb8000\"");
    }
    const auto same = std::bit_cast<float>(bits);
    if (std::bit_cast<std::uint32_t>(value) != bits && !(std::isnan(value) && std::isnan(same))) {
        line.refuse("the real and its bits are two different values");
    }
    return same;
}

void read_series(JsonLine& line, std::vector<float>& series)
{
    series.clear();
    line.open_list();
    while (!line.is_list_end()) {
        series.push_back(read_real(line));
        if (series.size() > Request::series_entries) {
            line.refuse("a series has at most " + std::to_string(Request::series_entries) + " entries");
        }
    }
    line.close_list();
}

void read_value(JsonLine& line, const Argument& argument, std::size_t text_size, RecordedValue& value)
{
    if (argument.kind == Kind::integer) {
        value.integer = line.integer();
    } else if (argument.kind == Kind::real) {
        value.real = read_real(line);
    } else if (argument.kind == Kind::series) {
        read_series(line, value.series);
    } else if (argument.direction == Direction::in) {
        read_bytes(line, text_size, value.text);
    } else {
        line.open_object();
        line.member("text");
        read_bytes(line, text_size, value.text);
        line.member("unchanged");
        read_ranges(line, text_size);
        line.close_object();
    }
}

void read_values(JsonLine& line, const RecordedExchange& exchange, Direction direction, RecordedValues& values)
{
    const HostKey& key = exchange.key();
    std::size_t text = 0;
    line.open_list();
    for (std::size_t i = 0; i < key.argument_count; ++i) {
        const bool is_text = key.arguments[i].kind == Kind::text;
        const std::size_t size = is_text ? static_cast<std::size_t>(exchange.text_lengths[text++]) : 0;
        if (key.arguments[i].direction == direction) {
            read_value(line, key.arguments[i], std::min(size, longest_recorded_text), values[i]);
        }
    }
    line.close_list();
}

} // namespace

void read_exchange(JsonLine& line, RecordedExchange& exchange)
{
    line.member("exchange");
    if (line.count() != exchange.number + 1) {
        line.refuse("the number of this exchange is " + std::to_string(exchange.number + 1));
    }
    line.member("key");
    exchange.key_position = read_key(line);
    read_form_and_lengths(line, exchange);
    line.member("in");
    read_values(line, exchange, Direction::in, exchange.values);
    line.member("out");
    read_values(line, exchange, Direction::out, exchange.values);
    exchange.in_values_changed = line.is_member("in_after");
    if (exchange.in_values_changed) {
        line.member("in_after");
        read_values(line, exchange, Direction::in, exchange.in_after);
    }
    line.close_object();
    line.end();
    ++exchange.number;
}

} // namespace velm
