/// A host library to put in the place of another one: it has the same name and procedures, hands every call on to
/// the real library, and writes down what passes. The call forms themselves are those of our own host library,
/// whose attached function here is one that forwards.

#include "host_link/host_keys.hpp"
#include "session/recorder_library/real_host.hpp"
#include "session/session_recorder.hpp"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <memory>
#include <string>
#include <system_error>
#include <utility>

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

/// Calls the form of `values` values with the key's length and `texts` lengths of texts, and no more.
template <std::size_t values, std::size_t texts>
void call(RealHost::Procedure procedure, const velm_host_request& request)
{
    [&]<std::size_t... value, std::size_t... text>(std::index_sequence<value...>, std::index_sequence<text...>)
    {
        using Form = void (*)(const char*, std::remove_cvref_t<decltype(request.values[value])>..., std::int32_t,
                              std::remove_cvref_t<decltype(request.text_lengths[text])>...);
        reinterpret_cast<Form>(procedure)(request.key, request.values[value]..., request.key_length,
                                          request.text_lengths[text]...);
    }
    (std::make_index_sequence<values>{}, std::make_index_sequence<texts>{});
}

template <std::size_t values>
void call(RealHost::Procedure procedure, const velm_host_request& request, std::ptrdiff_t texts)
{
    switch (texts) {
    case 0: return call<values, 0>(procedure, request);
    case 1: return call<values, 1>(procedure, request);
    default: return call<values, 2>(procedure, request);
    }
}

/// How many lengths of texts came with the request: only a known key in its own form has any that are known.
std::ptrdiff_t text_count(const velm_host_request& request)
{
    if (request.key_position == velm_unknown_key) {
        return 0;
    }
    const HostKey& key = host_keys[request.key_position];
    const bool own_form = key.argument_count == static_cast<std::size_t>(request.call_form);
    return own_form ? std::ranges::count(key.arguments, Kind::text, &Argument::kind) : 0;
}

/// The real host and the session, made when the first call comes and ended with the process.
class Recorder {
public:
    Recorder()
    {
        try {
            host_ = load_real_host();
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
            session_->record(request, [&] { forward(request); });
        } else {
            forward(request);
        }
    }

    void attach(velm_host_answer answer, void* context) const
    {
        if (host_.attach != nullptr) {
            host_.attach(answer, context);
        }
    }

private:
    void forward(const velm_host_request& request) const
    {
        const auto procedure = host_.exchange.at(static_cast<std::size_t>(request.call_form) - 1);
        const auto texts = text_count(request);
        switch (request.call_form) {
        case 1: return call<1>(procedure, request, texts);
        case 2: return call<2>(procedure, request, texts);
        case 3: return call<3>(procedure, request, texts);
        case 4: return call<4>(procedure, request, texts);
        default: return call<5>(procedure, request, texts);
        }
    }

    RealHost host_;
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
