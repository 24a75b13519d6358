#include "headless_host/headless_host.hpp"
#include "headless_host/request.hpp"
#include "session/host_library.hpp"
#include "session/session_recorder.hpp"
#include "tool/commands/commands.hpp"
#include "tool/files/file_arguments.hpp"
#include "tool/files/file_name.hpp"
#include "tool/files/model_file.hpp"
#include "tool/plug_in/plug_in.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iostream>
#include <stdexcept>

namespace velm {
namespace {

struct RecordArguments {
    FileName host;
    FileName session;
    FileName plug_in; ///< empty: the tool's own
    bool quiet = false;
};

/// Another host's library, which answers while the exchanges are written down.
class RecordedLibrary {
public:
    RecordedLibrary(const HostLibrary& host, SessionRecorder& recorder) : host_(host), recorder_(recorder) {}

    static void answer(void* library, const velm_host_request* request)
    {
        auto& self = *static_cast<RecordedLibrary*>(library);
        if (self.is_answering_) {
            self.is_this_tool_ = true;
            return;
        }
        self.is_answering_ = true;
        try {
            self.recorder_.record(*request, [&] { forward(self.host_, *request); });
        } catch (...) { // NOLINT(bugprone-empty-catch): a host that throws has not answered
        }
        self.is_answering_ = false;
        ++self.requests_;
        if (request->key_position == "PINFOHTML"_key && request->call_form == 1) {
            const auto size = static_cast<std::size_t>(std::clamp(request->text_lengths[0], 0, 512));
            self.completed_ = is_completion_message({static_cast<const char*>(request->values[0]), size});
        }
    }

    [[nodiscard]] std::uint64_t requests() const { return requests_; }
    [[nodiscard]] bool completed() const { return completed_; }
    /// True when the library has handed a request back: its call forms are this tool's own.
    [[nodiscard]] bool is_this_tool() const { return is_this_tool_; }

private:
    const HostLibrary& host_;
    SessionRecorder& recorder_;
    std::uint64_t requests_ = 0;
    bool completed_ = false;
    bool is_answering_ = false;
    bool is_this_tool_ = false;
};

HostLibrary load_host(const FileName& file)
{
    refuse_unless_regular(file, ExitCode::usage); // the loader would wait for a pipe's other end
    try {
        return load_host_library(file);
    } catch (const std::runtime_error& error) {
        throw ToolError(ExitCode::usage, file + " cannot be used as host library: " + printable(error.what()));
    }
}

ExitCode record_host(const RecordArguments& arguments)
{
    refuse_stream(arguments.session, "SESSION", "a session is recorded in a file of its own; give a file name");
    refuse_existing_session(arguments.session);
    const PlugIn plug_in(arguments.plug_in);
    const HostLibrary host = load_host(arguments.host);
    const auto recorder = new_session(arguments.session);
    RecordedLibrary recorded(host, *recorder);
    plug_in.run_export(&RecordedLibrary::answer, &recorded);
    recorder->close();
    if (!recorder->failure().empty()) {
        recorder->remove_if_failed();
        throw ToolError(ExitCode::failed, "recording stopped, and no file is left: " + printable(recorder->failure()));
    }
    if (recorded.is_this_tool()) {
        throw ToolError(ExitCode::failed,
                        arguments.host + " is no host of its own: it answers through this tool's library");
    }
    if (!recorded.completed()) {
        throw ToolError(ExitCode::failed,
                        "the plug-in did not announce completion; what it asked is in " + arguments.session);
    }
    if (!arguments.quiet) {
        std::cerr << "velm: " << arguments.session << ": " << recorded.requests() << " requests\n";
    }
    return ExitCode::done;
}

} // namespace

Command record_command(CLI::App& tool)
{
    auto values = std::make_shared<RecordArguments>();
    CLI::App* const arguments =
        tool.add_subcommand("record", "Run the plug-in on another host's library and record the session");
    arguments->add_option("HOST", values->host, "Library with the call forms, which holds a model of its own")
        ->required();
    arguments->add_option("SESSION", values->session, "Session file to create; an existing file is never touched")
        ->required();
    arguments->add_option("--plugin", values->plug_in, "Run another build of the plug-in")->type_name("LIBRARY");
    arguments->add_flag("--quiet", values->quiet, "Print nothing but errors");
    arguments->footer("Example:\n"
                      "  velm record ./libprevelmwdll_host.so desktop.jsonl\n\n"
                      "The host says where the input file is written. A model database is recorded with\n"
                      "velm export MODEL OUTPUT --record SESSION.");
    return {arguments, [values] { return record_host(*values); }};
}

} // namespace velm
