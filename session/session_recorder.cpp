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

std::string_view passed_key(const velm_host_request& request)
{
    constexpr std::int32_t most_characters = 64;
    const auto size = static_cast<std::size_t>(std::clamp(request.key_length, 0, most_characters));
    return text_at(request.key, size).substr(0, text_at(request.key, size).find('\0'));
}

/// Of a key that does not tell what the values are.
constexpr KeyForm no_form;

const KeyForm& form_of(const velm_host_request& request)
{
    const auto position = static_cast<std::size_t>(request.key_position);
    return request.key_position != velm_unknown_key &&
                   host_keys[position].argument_count == static_cast<std::size_t>(request.call_form)
               ? key_forms[position]
               : no_form;
}

/// Room for a line without texts and series, even of an unknown key; a text or a series asks for its own.
constexpr std::size_t line_room = 1024;

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
    return put(at, "],\"in\":[");
}

std::size_t text_count(const KeyForm& form)
{
    return static_cast<std::size_t>(std::ranges::count(form.read, Kind::text, &KeyForm::Value::kind) +
                                    std::ranges::count(form.filled, Kind::text, &KeyForm::Value::kind));
}

/// The values with commas between them, each put by `put_value`, and the list's end.
template <class PutValue>
char* put_list(char* at, const KeyForm::Values& values, PutValue put_value)
{
    for (const KeyForm::Value value : values) {
        at = put_value(at, value);
        *at++ = ',';
    }
    at -= values.count == 0 ? 0 : 1;
    *at++ = ']';
    return at;
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
        char* at = put_opening(beginning_.put(file_->room(line_room)), request);
        at = put_list(at, form_->read, [&](char* to, Value value) { return put_read_before(to, value); });
        at = put_list(put(at, ",\"out\":["), form_->filled,
                      [&](char* to, Value value) { return put_filled(to, request, value); });
        if (read_values_have_changed(request)) {
            at = put_list(put(at, ",\"in_after\":["), form_->read,
                          [&](char* to, Value value) { return put_read_after(to, request, value); });
        }
        file_->go_on_at(put_line_end(at));
        ++exchanges_;
        beginning_.count_up();
        if (form_ == &no_form) {
            series_count_.forget();
        } else {
            series_count_.remember(request, integers_before_);
        }
    } catch (const std::exception& error) {
        stop(error.what());
    }
}

void SessionRecorder::keep_values(const velm_host_request& request)
{
    form_ = &form_of(request);
    has_own_lengths_ = form_ != &no_form;
    for (const Value value : form_->read) {
        if (value.kind == Kind::integer) {
            integers_before_[value.argument] = number_at<std::int32_t>(request.values[value.argument]);
        }
    }
    if (!form_->has_only_numbers) {
        keep_texts_and_series(request);
    }
}

void SessionRecorder::keep_texts_and_series(const velm_host_request& request)
{
    const HostKey& key = host_keys[request.key_position];
    std::size_t text = 0;
    for (std::size_t i = 0; i < key.argument_count; ++i) {
        const Argument& argument = key.arguments[i];
        if (argument.kind == Kind::text) {
            const std::int32_t length = request.text_lengths[text++];
            const auto size = static_cast<std::size_t>(std::max(length, 0));
            texts_before_[i].assign(text_at(request.values[i], std::min(size, longest_recorded_text)));
            has_own_lengths_ =
                has_own_lengths_ && argument.direction == Direction::out && argument.text_length == length;
        } else if (argument.kind == Kind::series && !series_count_.is_of(request, integers_before_)) {
            const auto* const series = static_cast<const float*>(request.values[i]);
            series_before_[i].assign(series, series + Request::series_entries);
        }
    }
}

char* SessionRecorder::put_opening(char* at, const velm_host_request& request) const
{
    if (!has_own_lengths_) {
        return put_key_form_and_lengths(at, request, text_count(*form_));
    }
    put(at, {form_->text.data(), KeyForm::text_room});
    return at + form_->text_size;
}

char* SessionRecorder::put_read_before(char* at, Value value)
{
    return value.kind == Kind::integer ? put_integer(at, integers_before_[value.argument])
                                       : put_sent_text(at, texts_before_[value.argument]);
}

char* SessionRecorder::put_read_after(char* at, const velm_host_request& request, Value value)
{
    return value.kind == Kind::integer ? put_integer(at, number_at<std::int32_t>(request.values[value.argument]))
                                       : put_sent_text(at, text_now(request, value.argument));
}

char* SessionRecorder::put_filled(char* at, const velm_host_request& request, Value value)
{
    const void* const address = request.values[value.argument];
    switch (value.kind) {
    case Kind::integer: return put_integer(at, number_at<std::int32_t>(address));
    case Kind::real: return put_real(at, number_at<float>(address));
    case Kind::text: return put_filled_text(at, texts_before_[value.argument], text_now(request, value.argument));
    case Kind::series: return put_series(at, request, value.argument);
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

bool SessionRecorder::read_values_have_changed(const velm_host_request& request) const
{
    bool changed = false;
    for (const auto& [argument, kind] : form_->read) {
        changed |= kind == Kind::integer
                       ? integers_before_[argument] != number_at<std::int32_t>(request.values[argument])
                       : texts_before_[argument] != text_now(request, argument);
    }
    return changed;
}

char* SessionRecorder::put_series(char* at, const velm_host_request& request, std::size_t argument)
{
    const auto* const series = static_cast<const float*>(request.values[argument]);
    std::size_t entries = series_count_.entries();
    if (!series_count_.is_of(request, integers_before_)) { // up to the last entry that changed
        const std::vector<float>& before = series_before_[argument];
        entries = before.size();
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

} // namespace velm
