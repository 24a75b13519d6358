#include "session/session_recorder.hpp"

#include "headless_host/request.hpp"
#include "session/line_text.hpp"
#include "session/real_text.hpp"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <exception>

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

constexpr std::string_view in_values = "\",\"in\":[";

std::string_view passed_key(const velm_host_request& request)
{
    constexpr std::int32_t most_characters = 64;
    const auto size = static_cast<std::size_t>(std::clamp(request.key_length, 0, most_characters));
    return text_at(request.key, size).substr(0, text_at(request.key, size).find('\0'));
}

/// Room for a line without texts and series, even of an unknown key; a text or a series asks for its own.
constexpr std::size_t line_room = 1024;

/// A key as it stands in its lines: ,"key":"GVOLUME","in":[
struct KeyMember {
    static constexpr std::size_t room = 48; ///< one size for all copies faster

    std::array<char, room> text{}; ///< NULs behind it
    std::uint32_t size = 0;
};

constexpr auto key_members = [] {
    std::array<KeyMember, host_key_count> members{};
    for (std::size_t i = 0; i < host_key_count; ++i) {
        for (const std::string_view piece : {std::string_view(",\"key\":\""), host_keys[i].name, in_values}) {
            for (const char character : piece) {
                members[i].text[members[i].size++] = character;
            }
        }
    }
    return members;
}();

char* put(char* to, std::string_view json)
{
    std::memcpy(to, json.data(), json.size());
    return to + json.size();
}

/// The members from the key to the beginning of the values.
char* put_key_form_and_lengths(char* at, const velm_host_request& request, std::size_t texts)
{
    at = put_text(put(at, ",\"key\":"), passed_key(request));
    at = put_integer(put(at, ",\"form\":"), request.call_form);
    at = put_integer(put(at, ",\"lengths\":["), request.key_length);
    for (std::size_t i = 0; i < texts; ++i) {
        at = put_integer(put(at, ","), request.text_lengths[i]);
    }
    return put(put(at, "]"), in_values.substr(1));
}

/// Wide stores have left something behind the line, which become NULs again. The line feed is written after all else:
/// what ends in one is whole, wherever the process is ended.
char* put_line_end(char* at)
{
    constexpr std::string_view end("}\n\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 16);
    std::atomic_signal_fence(std::memory_order_release);
    put(at, end);
    return at + 2;
}

} // namespace

SessionRecorder::SessionRecorder(const std::filesystem::path& file)
{
    file_.emplace(file);
    append("{\"velm_session\":" + std::to_string(session_version) + "}\n");
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
        append("{\"end\":" + std::to_string(exchanges_) + "}\n");
        file_->close();
        file_.reset();
    } catch (const std::exception& error) {
        stop(error.what());
    }
}

void SessionRecorder::append(const std::string& line)
{
    file_->go_on_at(put(file_->room(line.size()), line));
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
        char* at = put_opening(file_->room(line_room), request);
        at = put_list(at, Direction::in, [this](char* to, std::size_t i) { return put_in_value_before(to, i); });
        at = put_list(put(at, ",\"out\":["), Direction::out,
                      [&](char* to, std::size_t i) { return put_out_value(to, request, i); });
        if (in_values_have_changed(request)) {
            at = put_list(put(at, ",\"in_after\":["), Direction::in,
                          [&](char* to, std::size_t i) { return put_in_value_after(to, request, i); });
        }
        file_->go_on_at(put_line_end(at));
        remember_count(request);
    } catch (const std::exception& error) {
        stop(error.what());
    }
}

void SessionRecorder::keep_values(const velm_host_request& request)
{
    key_ = nullptr;
    if (request.key_position == velm_unknown_key) {
        return;
    }
    const HostKey& key = host_keys[request.key_position];
    if (key.argument_count != static_cast<std::size_t>(request.call_form)) {
        return;
    }
    key_ = &key;
    has_own_lengths_ = true;
    std::size_t text = 0;
    for (std::size_t i = 0; i < key.argument_count; ++i) {
        const Argument& argument = key.arguments[i];
        if (argument.kind == Kind::text) {
            keep_text(request, i, request.text_lengths[text++]);
        } else if (argument.direction == Direction::in) {
            integers_before_[i] = number_at<std::int32_t>(request.values[i]);
        } else if (argument.kind == Kind::series && !knows_length_of_series(request)) {
            const auto* const series = static_cast<const float*>(request.values[i]);
            series_before_[i].assign(series, series + Request::series_entries);
        }
    }
}

void SessionRecorder::keep_text(const velm_host_request& request, std::size_t argument, std::int32_t length)
{
    const auto size = static_cast<std::size_t>(std::max(length, 0));
    texts_before_[argument].assign(text_at(request.values[argument], std::min(size, longest_recorded_text)));
    has_own_lengths_ = has_own_lengths_ && key_->arguments[argument].direction == Direction::out &&
                       key_->arguments[argument].text_length == length;
}

char* SessionRecorder::put_opening(char* at, const velm_host_request& request) const
{
    at = put_integer(put(at, "{\"exchange\":"), static_cast<std::int64_t>(exchanges_));
    if (key_ == nullptr || !has_own_lengths_) {
        const auto texts = key_ == nullptr ? 0 : std::ranges::count(key_->arguments, Kind::text, &Argument::kind);
        return put_key_form_and_lengths(at, request, static_cast<std::size_t>(texts));
    }
    const KeyMember& member = key_members[static_cast<std::size_t>(request.key_position)];
    put(at, {member.text.data(), KeyMember::room});
    return at + member.size;
}

/// The values of that direction, with commas between them, and the list's end.
template <class PutValue>
char* SessionRecorder::put_list(char* at, Direction direction, PutValue put_value) const
{
    std::size_t comma = 0;
    for (std::size_t i = 0; key_ != nullptr && i < key_->argument_count; ++i) {
        if (key_->arguments[i].direction == direction) {
            at = put_value(at, i);
            *at++ = ',';
            comma = 1;
        }
    }
    at -= comma;
    *at++ = ']';
    return at;
}

char* SessionRecorder::put_in_value_before(char* at, std::size_t argument)
{
    return key_->arguments[argument].kind == Kind::integer ? put_integer(at, integers_before_[argument])
                                                           : put_sent_text(at, texts_before_[argument]);
}

char* SessionRecorder::put_in_value_after(char* at, const velm_host_request& request, std::size_t argument)
{
    return key_->arguments[argument].kind == Kind::integer
               ? put_integer(at, number_at<std::int32_t>(request.values[argument]))
               : put_sent_text(at, text_now(request, argument));
}

char* SessionRecorder::put_out_value(char* at, const velm_host_request& request, std::size_t argument)
{
    const void* const value = request.values[argument];
    switch (key_->arguments[argument].kind) {
    case Kind::integer: return put_integer(at, number_at<std::int32_t>(value));
    case Kind::real: return put_real(at, number_at<float>(value));
    case Kind::text: return put_filled_text(at, texts_before_[argument], text_now(request, argument));
    case Kind::series: return put_series(at, request, argument);
    }
    return at;
}

char* SessionRecorder::put_sent_text(char* at, std::string_view text)
{
    return put_text(more_room(at, text_room(text.size())), text);
}

char* SessionRecorder::put_filled_text(char* at, std::string_view before, std::string_view after)
{
    at = more_room(at, text_room(after.size()) + ranges_room(after.size()));
    at = put_text(put(at, "{\"text\":"), after);
    at = put_equal_ranges(put(at, ",\"unchanged\":"), before, after);
    return put(at, "}");
}

char* SessionRecorder::more_room(char* at, std::size_t size)
{
    file_->go_on_at(at);
    return file_->room(size + line_room);
}

std::string_view SessionRecorder::text_now(const velm_host_request& request, std::size_t argument) const
{
    return text_at(request.values[argument], texts_before_[argument].size());
}

bool SessionRecorder::in_values_have_changed(const velm_host_request& request) const
{
    for (std::size_t i = 0; key_ != nullptr && i < key_->argument_count; ++i) {
        const Argument& argument = key_->arguments[i];
        if (argument.direction == Direction::in &&
            (argument.kind == Kind::integer ? integers_before_[i] != number_at<std::int32_t>(request.values[i])
                                            : texts_before_[i] != text_now(request, i))) {
            return true;
        }
    }
    return false;
}

bool SessionRecorder::knows_length_of_series(const velm_host_request& request) const
{
    return series_count_.key_position == request.key_position && series_count_.system == integers_before_[0] &&
           series_count_.item == integers_before_[1];
}

char* SessionRecorder::put_series(char* at, const velm_host_request& request, std::size_t argument)
{
    const auto* const series = static_cast<const float*>(request.values[argument]);
    std::size_t entries = Request::series_entries;
    if (knows_length_of_series(request)) {
        entries = std::min(entries, static_cast<std::size_t>(std::max(series_count_.count, 0)));
    } else { // up to the last entry that changed
        const std::vector<float>& before = series_before_[argument];
        while (entries > 0 && same_bits(series[entries - 1], before[entries - 1])) {
            --entries;
        }
    }
    constexpr std::size_t most_at_once = 1'000;
    *at++ = '[';
    for (std::size_t i = 0; i < entries; ++i) {
        if (i % most_at_once == 0) {
            at = more_room(at, most_at_once * (real_room + 1));
        }
        at = put_real(at, series[i]);
        *at++ = ',';
    }
    at -= entries == 0 ? 0 : 1;
    *at++ = ']';
    return at;
}

void SessionRecorder::remember_count(const velm_host_request& request)
{
    series_count_.key_position = velm_unknown_key;
    const bool of_boundary = request.key_position == "GNBFP"_key;
    if ((of_boundary || request.key_position == "GNBWK"_key) && key_ != nullptr) {
        series_count_ = {of_boundary ? "GALLBOUNDFUNC"_key : "GALLLOADFUNC"_key, integers_before_[0],
                         integers_before_[1], number_at<std::int32_t>(request.values[2])};
    }
}

} // namespace velm
