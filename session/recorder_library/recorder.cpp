/// A host library to put in the place of another one: it has the same name and procedures, hands every call on to
/// the real library, and writes down what passes. The call forms themselves are those of our own host library,
/// whose attached function here is one that forwards.

#include "session/host_library.hpp"
#include "session/recorder_library/surroundings.hpp"
#include "session/session_recorder.hpp"

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
    (void)std::fprintf(stderr, "prevelmwdll recorder: %s\n", words.c_str());
}

/// A recording that there is already is left alone: the next gets a number.
std::filesystem::path numbered(const std::filesystem::path& file, int number)
{
    std::filesystem::path name = file.stem();
    if (number > 1) {
        name += '-';
        name += std::to_string(number);
    }
    name += file.extension();
    return file.parent_path() / name;
}

std::unique_ptr<SessionRecorder> new_session()
{
    constexpr int most_sessions = 10'000;
    const std::filesystem::path wanted = wanted_session_file();
    for (int number = 1;; ++number) {
        try {
            return std::make_unique<SessionRecorder>(numbered(wanted, number));
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
            host_ = load_host_library(real_host_library());
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
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;
    Recorder(Recorder&&) = delete;
    Recorder& operator=(Recorder&&) = delete;

    void exchange(const velm_host_request& request)
    {
        if (host_.exchange.front() == nullptr) {
            return;
        }
        if (session_) {
            session_->record(request, [&] { forward(host_, request); });
        } else {
            forward(host_, request);
        }
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
