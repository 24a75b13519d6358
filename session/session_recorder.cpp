#include "session/session_recorder.hpp"

#include "headless_host/request.hpp"

#include <algorithm>
#include <cstring>
#include <exception>
#include <string_view>
#include <utility>

namespace velm {
namespace {

template <class Number>
Number number_at(const void* address)
{
    Number value{};
    std::memcpy(&value, address, sizeof value);
    return value;
}

bool same_bits(const float& one, const float& other)
{
    return std::memcmp(static_cast<const void*>(&one), static_cast<const void*>(&other), sizeof one) == 0;
}

std::string_view text_at(const void* address, std::size_t size)
{
    return {static_cast<const char*>(address), size};
}

std::string_view passed_key(const velm_host_request& request)
{
    constexpr std::int32_t most_characters = 64;
    const auto size = static_cast<std::size_t>(std::clamp(request.key_length, 0, most_characters));
    return text_at(request.key, size).substr(0, text_at(request.key, size).find('\0'));
}

/// The members from the key to the lengths.
void put_key_form_and_lengths(LineWriter& line, std::string_view key, std::int32_t form, std::int32_t key_length,
                              std::span<const std::int32_t> text_lengths)
{
    line.put(",\"key\":");
    line.put_text(key);
    line.put(",\"form\":");
    line.put_integer(form);
    line.put(",\"lengths\":[");
    line.put_integer(key_length);
    for (const std::int32_t length : text_lengths) {
        line.put(",");
        line.put_integer(length);
    }
    line.put("]");
}

/// The same for every key that has no text: always one and the same.
std::array<std::string, host_key_count> members_of_keys()
{
    std::array<std::string, host_key_count> members;
    for (std::size_t i = 0; i < host_key_count; ++i) {
        LineWriter line;
        const HostKey& key = host_keys[i];
        put_key_form_and_lengths(line, key.name, static_cast<std::int32_t>(key.argument_count), key.length(), {});
        members[i] = line.line();
    }
    return members;
}

} // namespace

SessionRecorder::SessionRecorder(const std::filesystem::path& file)
{
    file_.emplace(file);
    file_->append("{\"velm_session\":" + std::to_string(session_version) + "}\n");
}

SessionRecorder::~SessionRecorder()
{
    close();
}

void SessionRecorder::close() noexcept
{
    if (!file_) {
        return;
    }
    try {
        file_->append("{\"end\":" + std::to_string(exchanges_) + "}\n");
        file_->close();
        file_.reset();
    } catch (const std::exception& error) {
        stop(error.what());
    }
}

void SessionRecorder::stop(const char* reason) noexcept
{
    file_.reset();
    try {
        failure_ = reason;
    } catch (const std::exception&) {
        failure_ = "no memory"; // short enough to need none
    }
}

void SessionRecorder::before_answer(const velm_host_request& request) noexcept
{
    if (!file_) {
        return;
    }
    try {
        keep_values(request);
    } catch (const std::exception& error) {
        stop(error.what());
    }
}

void SessionRecorder::after_answer(const velm_host_request& request) noexcept
{
    if (!file_) {
        return;
    }
    try {
        ++exchanges_;
        line_.clear();
        put_opening(request);
        put_list(",\"in\":", Direction::in, [this](std::size_t i) { put_in_value_before(i); });
        put_list(",\"out\":", Direction::out, [&](std::size_t i) { put_out_value(request, i); });
        if (in_values_have_changed()) {
            put_list(",\"in_after\":", Direction::in, [this](std::size_t i) { put_in_value_after(i); });
        }
        line_.put("}\n");
        file_->append(line_.line());
        remember_count(request);
    } catch (const std::exception& error) {
        stop(error.what());
    }
}

void SessionRecorder::keep_values(const velm_host_request& request)
{
    value_count_ = 0;
    if (request.key_position == velm_unknown_key) {
        return;
    }
    const HostKey& key = host_keys[request.key_position];
    if (key.argument_count != static_cast<std::size_t>(request.call_form)) {
        return;
    }
    std::size_t text = 0;
    for (; value_count_ < key.argument_count; ++value_count_) {
        const Argument& argument = key.arguments[value_count_];
        Value& value = values_[value_count_];
        value = {argument.kind, argument.direction, request.values[value_count_], 0};
        RecordedValue& before = before_[value_count_];
        if (argument.kind == Kind::text) {
            const std::int32_t passed = std::max(request.text_lengths[text++], 0);
            value.text_size = std::min(static_cast<std::size_t>(passed), longest_recorded_text);
            before.text.assign(text_at(value.address, value.text_size));
        } else if (argument.direction == Direction::in) {
            before.integer = number_at<std::int32_t>(value.address);
        } else if (argument.kind == Kind::series && !knows_length_of_series(request)) {
            const auto* const series = static_cast<const float*>(value.address);
            before.series.assign(series, series + Request::series_entries);
        }
    }
}

void SessionRecorder::put_opening(const velm_host_request& request)
{
    static const std::array<std::string, host_key_count> members = members_of_keys();
    line_.put("{\"exchange\":");
    line_.put_integer(static_cast<std::int64_t>(exchanges_));
    const auto texts = std::ranges::count(values(), Kind::text, &Value::kind);
    if (value_count_ != 0 && texts == 0) {
        line_.put(members[static_cast<std::size_t>(request.key_position)]);
    } else {
        put_key_form_and_lengths(line_, passed_key(request), request.call_form, request.key_length,
                                 std::span(request.text_lengths).first(static_cast<std::size_t>(texts)));
    }
}

template <class PutValue>
void SessionRecorder::put_list(std::string_view member, Direction direction, PutValue put_value)
{
    line_.put(member);
    char separator = '[';
    for (std::size_t i = 0; i < value_count_; ++i) {
        if (values_[i].direction == direction) {
            line_.put(std::exchange(separator, ','));
            put_value(i);
        }
    }
    if (separator == '[') {
        line_.put('[');
    }
    line_.put(']');
}

void SessionRecorder::put_in_value_before(std::size_t value)
{
    if (values_[value].kind == Kind::integer) {
        line_.put_integer(before_[value].integer);
    } else {
        line_.put_text(before_[value].text);
    }
}

void SessionRecorder::put_in_value_after(std::size_t value)
{
    const Value& after = values_[value];
    if (after.kind == Kind::integer) {
        line_.put_integer(number_at<std::int32_t>(after.address));
    } else {
        line_.put_text(text_at(after.address, after.text_size));
    }
}

void SessionRecorder::put_out_value(const velm_host_request& request, std::size_t value)
{
    const Value& after = values_[value];
    switch (after.kind) {
    case Kind::integer: line_.put_integer(number_at<std::int32_t>(after.address)); break;
    case Kind::real: line_.put_real(number_at<float>(after.address)); break;
    case Kind::text:
        line_.put("{\"text\":");
        line_.put_text(text_at(after.address, after.text_size));
        line_.put(",\"unchanged\":");
        line_.put_equal_ranges(before_[value].text, text_at(after.address, after.text_size));
        line_.put('}');
        break;
    case Kind::series: put_series(request, value); break;
    }
}

bool SessionRecorder::in_values_have_changed() const
{
    for (std::size_t i = 0; i < value_count_; ++i) {
        const Value& value = values_[i];
        if (value.direction == Direction::in &&
            (value.kind == Kind::integer ? before_[i].integer != number_at<std::int32_t>(value.address)
                                         : before_[i].text != text_at(value.address, value.text_size))) {
            return true;
        }
    }
    return false;
}

bool SessionRecorder::knows_length_of_series(const velm_host_request& request) const
{
    return series_count_.key_position == request.key_position && series_count_.system == before_[0].integer &&
           series_count_.item == before_[1].integer;
}

void SessionRecorder::put_series(const velm_host_request& request, std::size_t value)
{
    const auto* const series = static_cast<const float*>(values_[value].address);
    std::size_t entries = Request::series_entries;
    if (knows_length_of_series(request)) {
        entries = std::min(entries, static_cast<std::size_t>(std::max(series_count_.count, 0)));
    } else { // up to the last entry that changed
        const std::vector<float>& before = before_[value].series;
        while (entries > 0 && same_bits(series[entries - 1], before[entries - 1])) {
            --entries;
        }
    }
    put_reals({series, entries});
}

/// In pieces that stay in the processor's cache: a full series makes a line of millions of bytes.
void SessionRecorder::put_reals(std::span<const float> reals)
{
    constexpr std::size_t most_at_once = 1'000;
    line_.put('[');
    while (reals.size() > most_at_once) {
        line_.put_reals(reals.first(most_at_once));
        line_.put(',');
        file_->append(line_.line());
        line_.clear();
        reals = reals.subspan(most_at_once);
    }
    line_.put_reals(reals);
    line_.put(']');
}

void SessionRecorder::remember_count(const velm_host_request& request)
{
    series_count_.key_position = velm_unknown_key;
    const bool of_boundary = request.key_position == "GNBFP"_key;
    if ((of_boundary || request.key_position == "GNBWK"_key) && value_count_ != 0) {
        series_count_ = {of_boundary ? "GALLBOUNDFUNC"_key : "GALLLOADFUNC"_key, before_[0].integer, before_[1].integer,
                         number_at<std::int32_t>(request.values[2])};
    }
}

} // namespace velm
