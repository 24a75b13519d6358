#include "session/replay.hpp"

#include "headless_host/headless_host.hpp"
#include "headless_host/request.hpp"
#include "plain_text/plain_text.hpp"
#include "session/exchange_line.hpp"

#include <algorithm>
#include <utility>

namespace velm {
namespace {

constexpr std::uint64_t requests_between_progress = 65'536;

bool is_of_version_panel(std::int32_t key_position, std::string_view fragment)
{
    return key_position == "PINFOHTML"_key && !fragment.starts_with("<li>");
}

bool begins_failure_item(const velm_host_request& request)
{
    return key_of(request) != nullptr && request.key_position == "PINFOHTML"_key &&
           bytes_of(request)[0].starts_with(R"(<li><span style="font-weight: bold; color: red;">)");
}

std::string words_of(RecordedExchange exchange)
{
    return request_in_words(request_of(exchange));
}

bool is_same_request(const RecordedExchange& recorded, const velm_host_request& request)
{
    if (key_of(request) != &recorded.key() || !std::ranges::equal(recorded.text_lengths, request.text_lengths)) {
        return false;
    }
    for (std::size_t i = 0; i < recorded.key().argument_count; ++i) {
        const std::string& bytes = recorded.values[i];
        if (recorded.key().arguments[i].direction == Direction::in &&
            bytes != std::string_view(static_cast<const char*>(request.values[i]), bytes.size())) {
            return false;
        }
    }
    return true;
}

/// The request is the same, so that every value has the size of the recorded one, a series room for any.
void put_answer(const RecordedExchange& recorded, const velm_host_request& request)
{
    for (std::size_t i = 0; i < recorded.key().argument_count; ++i) {
        const bool is_out = recorded.key().arguments[i].direction == Direction::out;
        if (is_out || recorded.in_after) {
            const ValueBytes& values = is_out ? recorded.values : *recorded.in_after;
            std::ranges::copy(values[i], static_cast<char*>(request.values[i]));
        }
    }
}

} // namespace

Replay::Replay(SessionReader& session, std::uint64_t export_number, std::string output_file_name)
    : session_(session), output_file_name_(std::move(output_file_name)), next_(session.find_export(export_number))
{
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
    if (in_version_panel_ && requests_ > 0) { // however long it is, then and now
        if (key_of(request) != nullptr && is_of_version_panel(request.key_position, bytes_of(request)[0])) {
            return;
        }
        in_version_panel_ = false;
        while (next_ != nullptr && is_of_version_panel(next_->key_position, next_->values[0])) {
            advance();
        }
    }
    if (is_failing_) {
        const std::string_view said = bytes_of(request)[0];
        return stop(Outcome::failure, "the plug-in said: " + printable(said.substr(0, said.find('<'))));
    }
    const bool is_recorded = export_goes_on() && is_same_request(*next_, request);
    if (!is_recorded && begins_failure_item(request)) {
        is_failing_ = true;
        return;
    }
    if (!export_goes_on()) {
        if (next_ == nullptr && !session_.is_closed()) {
            return stop(Outcome::damage, session_.end_in_words() + ": the recording breaks off; the plug-in asked " +
                                             request_in_words(request));
        }
        return depart("the export's end", request_in_words(request));
    }
    if (!is_recorded) {
        return depart(words_of(*next_), request_in_words(request));
    }
    if (request.key_position == "GFILENAME"_key) {
        Request(request).put(0, output_file_name_);
    } else {
        put_answer(*next_, request);
    }
    if (request.key_position == "PINFOHTML"_key) {
        export_completed_ = is_completion_message(next_->values[0]);
    }
    advance();
}

/// Each export begins with the request for the output file name.
bool Replay::export_goes_on() const
{
    return next_ != nullptr && (requests_ == 0 || next_->key_position != "GFILENAME"_key);
}

void Replay::finish()
{
    if (outcome_ == Outcome::same && export_goes_on()) {
        depart(words_of(*next_), "nothing more");
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
