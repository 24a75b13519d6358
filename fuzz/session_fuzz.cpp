// Any file in the place of a recorded session: reading it ends, with exchanges and an end or a damage that has a place.
// A plug-in that asks what was recorded gets what was recorded, in fields of just the size that it passes, and a
// recorder between the two writes the same down again. The model of a session, if it has one, is made.
//
// An input that begins with 'S' is a file's own bytes behind that. Any other is the members of exchanges behind their
// numbers, one exchange a line; what makes them a whole session is put around them.

#include "fuzz/fuzz_bytes.hpp"
#include "fuzz/scratch_folder.hpp"
#include "headless_host/request.hpp"
#include "session/model_of_session.hpp"
#include "session/replay.hpp"
#include "session/session_recorder.hpp"

#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

using namespace velm;

namespace {

namespace fs = std::filesystem;

std::string session_of(std::string_view lines)
{
    std::string session = "{\"velm_session\":2}";
    int number = 0;
    const auto add = [&](std::string_view members) {
        session += "\n{\"exchange\":" + std::to_string(++number) + ',';
        session += members;
        session += '}';
    };
    add(R"("key":"GFILENAME","form":1,"lengths":[10,512],"in":[],"out":[{"text":")" + std::string(512, ' ') + "\"}]");
    while (!lines.empty()) {
        const std::size_t end = std::min(lines.find('\n'), lines.size() - 1);
        add(lines.substr(0, lines[end] == '\n' ? end : end + 1));
        lines.remove_prefix(end + 1);
    }
    add(R"("key":"PINFOHTML","form":1,"lengths":[10,36],"in":["File Export is Complete</span></li>\u0000"],"out":[])");
    return session + "\n{\"end\":" + std::to_string(number) + "}\n";
}

struct Reading {
    std::vector<RecordedExchange> exchanges; ///< up to the damage, if there is one
    bool is_sound = false;
};

Reading read(const fs::path& file)
{
    Reading reading;
    try {
        SessionReader session(file);
        while (const RecordedExchange* const exchange = session.next()) {
            reading.exchanges.push_back(*exchange);
        }
        expect(session.end_in_words().find(", line ") != std::string::npos, "the end has a place");
        reading.is_sound = true;
    } catch (const SessionError& error) {
        expect(std::string(error.what()).find(", column ") != std::string::npos, "a damage has a place");
    }
    return reading;
}

/// A value's bytes when the call has returned.
std::string_view bytes_after(const RecordedExchange& exchange, std::size_t i)
{
    const auto& [kind, direction, length, meaning] = exchange.key().arguments[i];
    const bool is_changed = exchange.in_values_changed && direction == Direction::in;
    return bytes_of(kind, is_changed ? exchange.in_after[i] : exchange.values[i]);
}

/// The plug-in's memory for a request: fields of exactly their sizes, which hold something that no host left there.
class Memory {
public:
    explicit Memory(RecordedExchange exchange) : request_(request_of(exchange))
    {
        std::ranges::copy(exchange.text_lengths, request_.text_lengths);
        for (std::size_t i = 0; i < exchange.key().argument_count; ++i) {
            const auto& [kind, direction, length, meaning] = exchange.key().arguments[i];
            std::string bytes(bytes_of(kind, exchange.values[i]));
            if (direction == Direction::out) {
                bytes.assign(kind == Kind::series ? Request::series_entries * sizeof(float) : bytes.size(), 'Z');
            }
            fields_[i] = std::make_unique<char[]>(bytes.size());
            std::ranges::copy(bytes, fields_[i].get());
            request_.values[i] = fields_[i].get();
        }
    }

    [[nodiscard]] const velm_host_request& request() const { return request_; }

    /// Whether the fields hold what the recorded call left there.
    [[nodiscard]] bool is_as_after(const RecordedExchange& exchange) const
    {
        bool is_same = true;
        for (std::size_t i = 0; i < exchange.key().argument_count; ++i) {
            const std::string_view after = bytes_after(exchange, i);
            is_same = is_same && std::string_view(fields_[i].get(), after.size()) == after;
        }
        return is_same;
    }

private:
    velm_host_request request_;
    std::array<std::unique_ptr<char[]>, HostKey::most_arguments> fields_;
};

/// A series that is recorded again has as many entries as were counted just before.
bool are_same(const RecordedExchange& one, const RecordedExchange& other)
{
    bool is_same = one.key_position == other.key_position && one.text_lengths == other.text_lengths;
    for (std::size_t i = 0; is_same && i < one.key().argument_count; ++i) {
        const std::string_view bytes = bytes_after(one, i);
        const std::string_view again = bytes_after(other, i);
        const std::size_t size =
            one.key().arguments[i].kind == Kind::series ? std::min(bytes.size(), again.size()) : std::string_view::npos;
        is_same = bytes.substr(0, size) == again.substr(0, size);
    }
    return is_same;
}

/// Two things belong to the replay: the output file's name, and what is posted of the version.
bool is_answered_otherwise(const RecordedExchange& exchange)
{
    return exchange.key_position == "GFILENAME"_key || exchange.key_position == "PINFOHTML"_key;
}

/// The exchanges of the first export.
std::span<const RecordedExchange> first_export(const std::vector<RecordedExchange>& exchanges)
{
    const auto begins = [](const RecordedExchange& exchange) { return exchange.key_position == "GFILENAME"_key; };
    const auto first = std::ranges::find_if(exchanges, begins);
    return {first, first == exchanges.end() ? first : std::find_if(first + 1, exchanges.end(), begins)};
}

void replay_and_record(const fs::path& session, const Reading& reading)
{
    const std::span<const RecordedExchange> asked = first_export(reading.exchanges);
    if (asked.empty()) {
        return;
    }
    const fs::path again = scratch_folder() / "again.jsonl";
    fs::remove(again);
    SessionReader reader(session);
    Replay replay(reader, 1, "out.inp");
    SessionRecorder recorder(again);
    for (const RecordedExchange& exchange : asked) {
        const Memory memory(exchange);
        recorder.record(memory.request(), [&] { Replay::answer(&replay, &memory.request()); });
        expect(replay.outcome() != Replay::Outcome::departure, "what was recorded is what is expected");
        expect(replay.outcome() == Replay::Outcome::same || !reading.is_sound, "a sound session is served");
        expect(memory.is_as_after(exchange) || is_answered_otherwise(exchange), "answers are as recorded");
    }
    recorder.close();
    expect(recorder.failure().empty(), "a replay can be recorded");

    const Reading recorded = read(again);
    expect(recorded.is_sound && recorded.exchanges.size() == asked.size(), "a recording is sound");
    for (std::size_t i = 0; i < asked.size(); ++i) {
        expect(are_same(asked[i], recorded.exchanges[i]) || is_answered_otherwise(asked[i]), "it holds what passed");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string_view input(reinterpret_cast<const char*>(bytes), size);
    const fs::path file = scratch_folder() / "session.jsonl";
    write_file(file, input.starts_with('S') ? input.substr(1) : session_of(input));
    const Reading reading = read(file);
    replay_and_record(file, reading);
    try {
        (void)model_of_session(file, 1);
    } catch (const NoModel& error) {
        expect(*error.what() != '\0', "what is no model has words");
    } catch (const SessionError&) {
        expect(!reading.is_sound, "a session is as sound as before");
    } catch (const std::out_of_range&) {
        expect(first_export(reading.exchanges).empty(), "the first export is there when it has begun");
    }
    return 0;
}
