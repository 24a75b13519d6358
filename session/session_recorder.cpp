#include "session/session_recorder.hpp"

#include "headless_host/request.hpp"
#include "session/line_writer.hpp"

#include <algorithm>
#include <cstring>
#include <span>
#include <utility>

namespace velm {
namespace {

/// True when the values are what the key says they are: nothing is known of those of other requests.
bool has_known_values(const velm_host_request& request)
{
    return request.key_position != velm_unknown_key &&
           host_keys[request.key_position].argument_count == static_cast<std::size_t>(request.call_form);
}

/// Calls `use` with each argument of the request, its number from 0 and, for a text, its length in bytes.
template <class Use>
void for_each_argument(const velm_host_request& request, Direction direction, Use use)
{
    if (!has_known_values(request)) {
        return;
    }
    const HostKey& key = host_keys[request.key_position];
    std::size_t text = 0;
    for (std::size_t i = 0; i < key.argument_count; ++i) {
        const Argument& argument = key.arguments[i];
        std::size_t length = 0;
        if (argument.kind == Kind::text) {
            const std::int32_t passed = request.text_lengths[text++];
            length = std::min(static_cast<std::size_t>(std::max(passed, 0)), longest_recorded_text);
        }
        if (argument.direction == direction) {
            use(i, argument.kind, length);
        }
    }
}

template <class Number>
Number number_at(const void* address)
{
    Number value{};
    std::memcpy(&value, address, sizeof value);
    return value;
}

std::string_view text_at(const void* address, std::size_t length)
{
    return {static_cast<const char*>(address), length};
}

const float* series_at(const void* address)
{
    return static_cast<const float*>(address);
}

std::string_view passed_key(const velm_host_request& request)
{
    constexpr std::int32_t most_characters = 64;
    const std::string_view passed(request.key,
                                  static_cast<std::size_t>(std::clamp(request.key_length, 0, most_characters)));
    return passed.substr(0, passed.find('\0'));
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
    } catch (const std::exception& error) {
        failure_ = error.what();
    }
    file_.reset();
}

void SessionRecorder::before_answer(const velm_host_request& request) noexcept
{
    if (!file_) {
        return;
    }
    try {
        keep_values(request);
    } catch (const std::exception& error) {
        failure_ = error.what();
        file_.reset();
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
        append_opening(request);
        append_in_values(request);
        append_out_values(request);
        append_in_values_after(request);
        line_ += "}\n";
        file_->append(line_);
        remember_count(request);
    } catch (const std::exception& error) {
        failure_ = error.what();
        file_.reset();
    }
}

void SessionRecorder::keep_values(const velm_host_request& request)
{
    const auto keep_text = [&](std::size_t i, std::size_t length) {
        before_[i].text.assign(text_at(request.values[i], length));
    };
    for_each_argument(request, Direction::in, [&](std::size_t i, Kind kind, std::size_t length) {
        if (kind == Kind::integer) {
            before_[i].integer = number_at<std::int32_t>(request.values[i]);
        } else {
            keep_text(i, length);
        }
    });
    for_each_argument(request, Direction::out, [&](std::size_t i, Kind kind, std::size_t length) {
        if (kind == Kind::text) {
            keep_text(i, length);
        } else if (kind == Kind::series && !has_known_length(request)) {
            const float* const series = series_at(request.values[i]);
            before_[i].series.assign(series, series + Request::series_entries);
        }
    });
}

void SessionRecorder::append_opening(const velm_host_request& request)
{
    line_ += "{\"exchange\":";
    append_integer(line_, static_cast<std::int64_t>(exchanges_));
    line_ += ",\"key\":";
    append_text(line_, passed_key(request));
    line_ += ",\"form\":";
    append_integer(line_, request.call_form);
    line_ += ",\"lengths\":[";
    append_integer(line_, request.key_length);
    std::size_t text = 0;
    const auto append_length = [&](std::size_t, Kind kind, std::size_t) {
        if (kind == Kind::text) {
            line_ += ',';
            append_integer(line_, request.text_lengths[text++]);
        }
    };
    for_each_argument(request, Direction::in, append_length);
    for_each_argument(request, Direction::out, append_length);
    line_ += ']';
}

void SessionRecorder::append_in_values(const velm_host_request& request)
{
    line_ += ",\"in\":[";
    const char* separator = "";
    for_each_argument(request, Direction::in, [&](std::size_t i, Kind kind, std::size_t) {
        line_ += std::exchange(separator, ",");
        if (kind == Kind::integer) {
            append_integer(line_, before_[i].integer);
        } else {
            append_text(line_, before_[i].text);
        }
    });
    line_ += ']';
}

void SessionRecorder::append_out_values(const velm_host_request& request)
{
    line_ += ",\"out\":[";
    const char* separator = "";
    for_each_argument(request, Direction::out, [&](std::size_t i, Kind kind, std::size_t length) {
        line_ += std::exchange(separator, ",");
        switch (kind) {
        case Kind::integer: append_integer(line_, number_at<std::int32_t>(request.values[i])); break;
        case Kind::real: append_real(line_, number_at<float>(request.values[i])); break;
        case Kind::text: append_text_value(before_[i].text, text_at(request.values[i], length)); break;
        case Kind::series: append_series_value(request, i); break;
        }
    });
    line_ += ']';
}

void SessionRecorder::append_text_value(std::string_view before, std::string_view after)
{
    line_ += "{\"text\":";
    append_text(line_, after);
    line_ += ",\"unchanged\":";
    append_equal_ranges(line_, before, after);
    line_ += '}';
}

bool SessionRecorder::has_known_length(const velm_host_request& request) const
{
    return series_count_.key_position == request.key_position && series_count_.system == before_[0].integer &&
           series_count_.item == before_[1].integer;
}

void SessionRecorder::append_series_value(const velm_host_request& request, std::size_t argument)
{
    const float* const series = series_at(request.values[argument]);
    std::size_t entries = Request::series_entries;
    if (has_known_length(request)) {
        entries = std::min(entries, static_cast<std::size_t>(std::max(series_count_.count, 0)));
    } else { // up to the last entry that changed
        const std::vector<float>& before = before_[argument].series;
        while (entries > 0 && std::memcmp(&series[entries - 1], &before[entries - 1], sizeof(float)) == 0) {
            --entries;
        }
    }
    append_series(line_, std::span(series, entries));
}

void SessionRecorder::append_in_values_after(const velm_host_request& request)
{
    bool changed = false;
    for_each_argument(request, Direction::in, [&](std::size_t i, Kind kind, std::size_t length) {
        changed |= kind == Kind::integer ? before_[i].integer != number_at<std::int32_t>(request.values[i])
                                         : before_[i].text != text_at(request.values[i], length);
    });
    if (!changed) {
        return;
    }
    line_ += ",\"in_after\":[";
    const char* separator = "";
    for_each_argument(request, Direction::in, [&](std::size_t i, Kind kind, std::size_t length) {
        line_ += std::exchange(separator, ",");
        if (kind == Kind::integer) {
            append_integer(line_, number_at<std::int32_t>(request.values[i]));
        } else {
            append_text(line_, text_at(request.values[i], length));
        }
    });
    line_ += ']';
}

/// How long a series is is asked for just before it.
void SessionRecorder::remember_count(const velm_host_request& request)
{
    series_count_.key_position = velm_unknown_key;
    const bool of_boundary = request.key_position == "GNBFP"_key;
    if ((of_boundary || request.key_position == "GNBWK"_key) && has_known_values(request)) {
        series_count_ = {of_boundary ? "GALLBOUNDFUNC"_key : "GALLLOADFUNC"_key, before_[0].integer, before_[1].integer,
                         number_at<std::int32_t>(request.values[2])};
    }
}

} // namespace velm
