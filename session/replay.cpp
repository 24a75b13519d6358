#include "session/replay.hpp"

#include "headless_host/request.hpp"
#include "session/request_words.hpp"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace velm {
namespace {

constexpr std::uint64_t requests_between_progress = 65'536;

std::string_view sent_text(const velm_host_request& request)
{
    const auto length = static_cast<std::size_t>(std::max(request.text_lengths[0], 0));
    return {static_cast<const char*>(request.values[0]), std::min(length, longest_recorded_text)};
}

bool is_list_item(std::string_view fragment)
{
    return fragment.starts_with("<li>");
}

bool is_sound(const velm_host_request& request)
{
    try {
        (void)Request(request);
        return true;
    } catch (const Unanswerable&) {
        return false;
    }
}

bool is_same_request(const RecordedExchange& recorded, const velm_host_request& request)
{
    if (recorded.key_position != request.key_position || !is_sound(request)) {
        return false;
    }
    const HostKey& key = recorded.key();
    for (std::size_t i = 0; i < key.argument_count; ++i) {
        if (key.arguments[i].direction == Direction::out) {
            continue;
        }
        const bool same =
            key.arguments[i].kind == Kind::integer
                ? std::memcmp(&recorded.values[i].integer, request.values[i], sizeof(std::int32_t)) == 0
                : recorded.text_lengths[0] == request.text_lengths[0] && recorded.values[i].text == sent_text(request);
        if (!same) {
            return false;
        }
    }
    return true;
}

/// The request is the same, so that every value has the size of the recorded one, a series room for any.
void put_value(const Argument& argument, const RecordedValue& value, void* address)
{
    switch (argument.kind) {
    case Kind::integer: std::memcpy(address, &value.integer, sizeof value.integer); break;
    case Kind::real: std::memcpy(address, &value.real, sizeof value.real); break;
    case Kind::text: std::memcpy(address, value.text.data(), value.text.size()); break;
    case Kind::series: std::copy(value.series.begin(), value.series.end(), static_cast<float*>(address)); break;
    }
}

void put_answer(const RecordedExchange& recorded, const velm_host_request& request)
{
    const HostKey& key = recorded.key();
    for (std::size_t i = 0; i < key.argument_count; ++i) {
        if (key.arguments[i].direction == Direction::out) {
            put_value(key.arguments[i], recorded.values[i], request.values[i]);
        } else if (recorded.in_values_changed) {
            put_value(key.arguments[i], recorded.in_after[i], request.values[i]);
        }
    }
}

} // namespace

Replay::Replay(SessionReader& session, std::uint64_t export_number, std::string output_file_name)
    : session_(session), output_file_name_(std::move(output_file_name))
{
    std::uint64_t exports = 0;
    for (advance(); next_ != nullptr; advance()) {
        if (next_->key_position == "GFILENAME"_key && ++exports == export_number) {
            return;
        }
    }
    throw std::out_of_range(session_.file().string() + " has no export " + std::to_string(export_number) + ", only " +
                            std::to_string(exports));
}

void Replay::answer(void* replay, const velm_host_request* request) noexcept
{
    auto& self = *static_cast<Replay*>(replay);
    if (self.outcome_ != Outcome::same) {
        return;
    }
    try {
        self.serve(*request);
    } catch (const std::exception& error) {
        self.stop(Outcome::damage, error.what());
    }
    if (++self.requests_ % requests_between_progress == 0 && self.on_progress) {
        self.on_progress(self.requests_);
    }
}

void Replay::serve(const velm_host_request& request)
{
    if (is_of_version_panel(request)) {
        return;
    }
    if (!export_goes_on()) {
        if (next_ == nullptr && !session_.is_closed()) {
            return stop(Outcome::damage, session_.end_in_words() + ": the recording breaks off; the plug-in asked " +
                                             request_words(request));
        }
        return depart("the export's end", request_words(request));
    }
    if (!is_same_request(*next_, request)) {
        return depart(request_words(*next_), request_words(request));
    }
    if (request.key_position == "GFILENAME"_key) {
        Request(request).put_text(0, output_file_name_);
    } else {
        put_answer(*next_, request);
    }
    if (request.key_position == "PINFOHTML"_key) {
        export_completed_ = is_completion_message(next_->values[0].text);
    }
    advance();
}

/// Passes over the version panel in both the session and what the plug-in sends, however long either is.
bool Replay::is_of_version_panel(const velm_host_request& request)
{
    const auto is_panel_next = [this] {
        return next_ != nullptr && next_->key_position == "PINFOHTML"_key && !is_list_item(next_->values[0].text);
    };
    if (!in_version_panel_ || requests_ == 0) {
        return false;
    }
    in_version_panel_ =
        request.key_position == "PINFOHTML"_key && is_sound(request) && !is_list_item(sent_text(request));
    if (in_version_panel_ && is_panel_next()) {
        advance();
    }
    while (!in_version_panel_ && is_panel_next()) {
        advance();
    }
    return in_version_panel_;
}

/// Each export begins with the request for the output file name.
bool Replay::export_goes_on() const
{
    return next_ != nullptr && (requests_ == 0 || next_->key_position != "GFILENAME"_key);
}

void Replay::finish()
{
    if (outcome_ == Outcome::same && export_goes_on()) {
        depart(request_words(*next_), "nothing more");
    }
}

void Replay::depart(const std::string& expected, const std::string& got)
{
    const std::string place =
        next_ == nullptr ? "behind the last exchange"
                         : "exchange " + std::to_string(next_->number) + " (line " + std::to_string(next_->line) + ")";
    stop(Outcome::departure, place + ": expected " + expected + ", the plug-in asked " + got);
}

void Replay::stop(Outcome outcome, std::string reason) noexcept
{
    outcome_ = outcome;
    reason_ = std::move(reason);
    if (on_stop) {
        on_stop();
    }
}

} // namespace velm
