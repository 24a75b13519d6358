// Any file in the place of a recorded session: reading it ends, with exchanges and an end or a damage that has a place.
// The model of a session, if it has one, is made.
//
// An input that begins with 'S' is a file's own bytes behind that. Any other is the members of exchanges behind their
// numbers, one exchange a line; what makes them a whole session is put around them.

#include "fuzz/fuzz_bytes.hpp"
#include "fuzz/scratch_folder.hpp"
#include "headless_host/request.hpp"
#include "session/model_of_session.hpp"
#include "session/session_reader.hpp"

#include <algorithm>
#include <filesystem>
#include <string>

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
    bool has_export = false; ///< begun before the damage, if there is one
    bool is_sound = false;
};

Reading read(const fs::path& file)
{
    Reading reading;
    try {
        SessionReader session(file);
        while (const RecordedExchange* const exchange = session.next()) {
            reading.has_export = reading.has_export || exchange->key_position == "GFILENAME"_key;
        }
        expect(session.end_in_words().find(", line ") != std::string::npos, "the end has a place");
        reading.is_sound = true;
    } catch (const SessionError& error) {
        expect(std::string(error.what()).find(", column ") != std::string::npos, "a damage has a place");
    }
    return reading;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string_view input(reinterpret_cast<const char*>(bytes), size);
    const fs::path file = scratch_folder() / "session.jsonl";
    write_file(file, input.starts_with('S') ? input.substr(1) : session_of(input));
    const Reading reading = read(file);
    try {
        (void)model_of_session(file, 1);
    } catch (const NoModel& error) {
        expect(*error.what() != '\0', "what is no model has words");
    } catch (const SessionError&) {
        expect(!reading.is_sound || !reading.has_export, "a session is as sound as before, with its first export");
    }
    return 0;
}
