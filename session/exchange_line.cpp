#include "session/exchange_line.hpp"

#include "headless_host/request.hpp"
#include "plain_text/plain_text.hpp"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>

namespace velm {
namespace {

using Json = rapidjson::Writer<rapidjson::StringBuffer>;

/// Every byte as the character of its number.
void put_text(Json& json, std::string_view bytes)
{
    std::string utf8;
    for (const char byte : bytes) {
        append_latin1(utf8, byte);
    }
    json.String(utf8.data(), static_cast<rapidjson::SizeType>(utf8.size()));
}

/// The ranges, counted from 1, in which both texts, of the same size, are the same: [[1,4],[8,30]].
void put_equal_ranges(Json& json, std::string_view before, std::string_view after)
{
    json.StartArray();
    for (std::size_t first = 0; first < after.size(); ++first) {
        std::size_t end = first;
        while (end < after.size() && before[end] == after[end]) {
            ++end;
        }
        if (end != first) {
            json.StartArray();
            json.Uint64(first + 1);
            json.Uint64(end);
            json.EndArray();
            first = end;
        }
    }
    json.EndArray();
}

void put_real(Json& json, float value)
{
    const std::string text = real_text(value);
    json.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

/// As many entries as were counted, otherwise up to the last that has changed.
void put_series(Json& json, std::string_view now, const std::string& before, std::optional<std::int32_t> counted_pairs)
{
    std::size_t entries = now.size() / sizeof(float);
    if (counted_pairs) {
        entries = std::min(entries, static_cast<std::size_t>(std::max(*counted_pairs, 0)));
    } else {
        const auto [last, unused] = std::mismatch(now.rbegin(), now.rend(), before.rbegin());
        entries = (static_cast<std::size_t>(now.rend() - last) + sizeof(float) - 1) / sizeof(float);
    }
    json.StartArray();
    for (std::size_t i = 0; i < entries; ++i) {
        put_real(json, number_at<float>(now, i * sizeof(float)));
    }
    json.EndArray();
}

/// A text that the host fills, with what it left as it was.
void put_filled_text(Json& json, std::string_view now, std::string_view before)
{
    json.StartObject();
    json.Key("text");
    put_text(json, now);
    json.Key("unchanged");
    put_equal_ranges(json, before, now);
    json.EndObject();
}

/// The values of a direction as they stand in `bytes`.
void put_values(Json& json, const char* member, const HostKey* key, const auto& bytes, const BeforeAnswer& before)
{
    const Direction direction = std::string_view(member) == "out" ? Direction::out : Direction::in;
    json.Key(member);
    json.StartArray();
    for (std::size_t i = 0; key != nullptr && i < key->argument_count; ++i) {
        if (key->arguments[i].direction != direction) {
            continue;
        }
        switch (key->arguments[i].kind) {
        case Kind::integer: json.Int(number_at<std::int32_t>(bytes[i])); break;
        case Kind::real: put_real(json, number_at<float>(bytes[i])); break;
        case Kind::series: put_series(json, bytes[i], before.bytes[i], before.counted_pairs); break;
        case Kind::text:
            direction == Direction::in ? put_text(json, bytes[i]) : put_filled_text(json, bytes[i], before.bytes[i]);
        }
    }
    json.EndArray();
}

} // namespace

const HostKey* key_of(const velm_host_request& request)
{
    const HostKey* const key = request.key_position == velm_unknown_key ? nullptr : &host_keys[request.key_position];
    return key != nullptr && key->argument_count == static_cast<std::size_t>(request.call_form) ? key : nullptr;
}

std::size_t text_count(const velm_host_request& request)
{
    const HostKey* const key = key_of(request);
    return key == nullptr ? 0
                          : static_cast<std::size_t>(std::ranges::count(key->arguments, Kind::text, &Argument::kind));
}

Bytes bytes_of(const velm_host_request& request)
{
    Bytes bytes;
    const HostKey* const key = key_of(request);
    const std::int32_t* length = request.text_lengths;
    for (std::size_t i = 0; key != nullptr && i < key->argument_count; ++i) {
        std::size_t size = sizeof(std::int32_t); // also that of a real
        if (key->arguments[i].kind == Kind::text) {
            size = std::min(static_cast<std::size_t>(std::max(*length++, 0)), longest_recorded_text);
        } else if (key->arguments[i].kind == Kind::series) {
            size = Request::series_entries * sizeof(float);
        }
        bytes[i] = {static_cast<const char*>(request.values[i]), size};
    }
    return bytes;
}

std::string exchange_line(std::uint64_t number, const velm_host_request& request, const BeforeAnswer& before)
{
    constexpr std::int32_t most_characters = 64;
    const HostKey* const key = key_of(request);
    const std::string_view name(request.key,
                                static_cast<std::size_t>(std::clamp(request.key_length, 0, most_characters)));
    rapidjson::StringBuffer line;
    Json json(line);
    json.StartObject();
    json.Key("exchange");
    json.Uint64(number);
    json.Key("key");
    put_text(json, name.substr(0, name.find('\0')));
    json.Key("form");
    json.Int(request.call_form);
    json.Key("lengths");
    json.StartArray();
    json.Int(request.key_length);
    for (std::size_t i = 0; i < text_count(request); ++i) {
        json.Int(request.text_lengths[i]);
    }
    json.EndArray();

    const Bytes now = bytes_of(request);
    put_values(json, "in", key, before.bytes, before);
    put_values(json, "out", key, now, before);
    bool is_changed = false;
    for (std::size_t i = 0; key != nullptr && i < key->argument_count; ++i) {
        is_changed |= key->arguments[i].direction == Direction::in && now[i] != before.bytes[i];
    }
    if (is_changed) {
        put_values(json, "in_after", key, now, before);
    }
    json.EndObject();
    line.Put('\n');
    return {line.GetString(), line.GetSize()};
}

} // namespace velm
