/// A host library to put in the place of another one: it has the same name and procedures, hands every call on to
/// the real library, and writes down what passes. The call forms themselves are those of our own host library,
/// whose attached function here is one that forwards.

#include "plain_text/plain_text.hpp"
#include "session/host_library.hpp"
#include "session/session_recorder.hpp"
#include "session/system.hpp"

#include <cstdio>
#include <exception>
#include <memory>
#include <string>
#include <system_error>

/// What the call forms of this library attach to, under a name that does not hide the real library's.
extern "C" void velm_recorder_attach(velm_host_answer answer, void* context);

namespace velm {
namespace {

void complain(const std::string& words)
{
    (void)std::fprintf(stderr, "prevelmwdll recorder: %s\n", printable(words).c_str());
}

/// Beside this library or beside a session there is another file: prevelmwdll_host.dll, river-2.jsonl.
std::filesystem::path beside(const std::filesystem::path& file, const std::string& addition)
{
    std::filesystem::path name = file.stem();
    name += addition;
    name += file.extension();
    return file.parent_path() / name;
}

/// A recording that there is already is left alone: the next gets a number.
std::unique_ptr<SessionRecorder> new_session()
{
    constexpr int most_sessions = 10'000;
    const std::filesystem::path named = session_of_environment();
    const std::filesystem::path wanted = named.empty() ? own_library().parent_path() / "session.jsonl" : named;
    for (int number = 1;; ++number) {
        try {
            return std::make_unique<SessionRecorder>(beside(wanted, number == 1 ? "" : '-' + std::to_string(number)));
        } catch (const std::system_error& error) {
            if (error.code() != std::errc::file_exists || number == most_sessions) {
                throw;
            }
        }
    }
}

/// The real host and the session, made when the first call comes and ended with the process.
class Recorder {
public:
    Recorder()
    {
        try {
            host_ = load_host_library(beside(own_library(), "_host"));
        } catch (const std::exception& error) {
            complain(std::string(error.what()) + "; requests stay unanswered and nothing is recorded");
            return;
        }
        try {
            session_ = new_session();
        } catch (const std::exception& error) {
            complain(std::string(error.what()) + "; nothing is recorded, name another file in VELM_SESSION");
        }
    }
    ~Recorder()
    {
        if (session_) {
            session_->close();
            if (!session_->failure().empty()) {
                complain("recording stopped: " + session_->failure());
            }
        }
    }
    Recorder& operator=(Recorder&&) = delete; // neither copied nor moved

    void exchange(const velm_host_request& request)
    {
        const auto answer = [&] {
            if (host_.exchange.front() != nullptr) {
                forward(host_, request);
            }
        };
        session_ ? session_->record(request, answer) : answer();
    }

    void attach(velm_host_answer answer, void* context) const
    {
        if (host_.attach != nullptr) {
            host_.attach(answer, context);
        }
    }

private:
    HostLibrary host_;
    std::unique_ptr<SessionRecorder> session_;
};

Recorder& recorder()
{
    static Recorder only;
    return only;
}

const bool attached = [] {
    velm_recorder_attach([](void*, const velm_host_request* request) { recorder().exchange(*request); }, nullptr);
    return true;
}();

} // namespace
} // namespace velm

void velm_host_attach(velm_host_answer answer, void* context)
{
    velm::recorder().attach(answer, context);
}
