#include "session/replay.hpp"
#include "session/session_reader.hpp"
#include "tool/commands/commands.hpp"
#include "tool/files/file_arguments.hpp"
#include "tool/files/file_kind.hpp"
#include "tool/files/file_name.hpp"
#include "tool/files/model_file.hpp"
#include "tool/plug_in/plug_in.hpp"
#include "tool/plug_in/written_file.hpp"
#include "tool/system/progress_bar.hpp"
#include "tool/system/terminal.hpp"
#include "whole_file/whole_file.hpp"

#include <CLI/CLI.hpp>

#include <iostream>
#include <optional>

namespace velm {
namespace {

struct ReplayArguments {
    FileName session;
    FileName output;
    FileName plug_in; ///< empty: the tool's own
    std::uint64_t export_number = 1;
    bool quiet = false;
};

std::string reason_in_words(const Replay& replay, const ReplayArguments& arguments)
{
    const bool departed = replay.outcome() == Replay::Outcome::departure;
    const bool failed = replay.outcome() == Replay::Outcome::failure;
    return (departed ? arguments.session + ", "
            : failed ? "the replay failed, "
                     : "") +
           replay.reason() + "; " + still(arguments.output);
}

ExitCode exit_code(const Replay& replay)
{
    switch (replay.outcome()) {
    case Replay::Outcome::departure: return ExitCode::findings;
    case Replay::Outcome::failure: return ExitCode::failed;
    default: return ExitCode::usage;
    }
}

/// Runs the plug-in. It cannot be called off, and without answers it may go on for as long as the last count says,
/// so that the process ends with the first departure.
void run_plug_in(const PlugIn& plug_in, Replay& replay, const ReplayArguments& arguments)
{
    std::optional<ProgressBar> bar;
    bar.emplace("replay", "requests", 0, arguments.quiet);
    replay.on_progress = [&](std::uint64_t requests) { bar->show(requests); };
    replay.on_stop = [&] {
        bar.reset();
        print_error(reason_in_words(replay, arguments));
        PlugIn::end_process(exit_code(replay));
    };
    plug_in.run_export(&Replay::answer, &replay);
    replay.finish();
}

ExitCode replay_session(const ReplayArguments& arguments)
{
    refuse_stream(arguments.session, "SESSION", "it is read more than once; give a file name");
    refuse_stream(arguments.output, "OUTPUT",
                  "a replay replaces its file only when it is whole, which a stream cannot; give a file name");
    refuse_unless_regular(arguments.session, ExitCode::usage);
    refuse_one_file({{"OUTPUT", arguments.output}, {"SESSION", arguments.session}});
    refuse_to_replace_model(arguments.output, true);
    std::optional<SessionReader> session;
    try {
        session.emplace(arguments.session);
    } catch (const std::exception& error) {
        throw ToolError(ExitCode::usage, error.what());
    }
    WholeFile output(arguments.output, Standing::replaced);
    refuse_long_path(output.content().string());
    const PlugIn plug_in(arguments.plug_in);
    Replay replay(*session, arguments.export_number, output.content().string());
    run_plug_in(plug_in, replay, arguments);

    const WrittenFile written = read_written_file(output.content());
    const std::string failure = replay.export_completed()
                                    ? written.incompleteness()
                                    : std::string("the plug-in did not announce completion, neither then nor now");
    if (!failure.empty()) {
        throw ToolError(ExitCode::failed, "the replay failed, " + still(arguments.output) + ": " + failure);
    }
    output.put_in_place();
    if (!arguments.quiet) {
        std::cerr << "velm: " << arguments.output << ": " << replay.requests() << " requests as recorded, "
                  << written.records << " records, " << written.bytes << " bytes\n";
        if (replay.has_more_exports()) {
            std::cerr << "velm: " << arguments.session << " holds more exports; --export "
                      << arguments.export_number + 1 << " replays the next\n";
        }
    }
    return ExitCode::done;
}

} // namespace

Command replay_command(CLI::App& tool)
{
    auto values = std::make_shared<ReplayArguments>();
    CLI::App* const arguments = tool.add_subcommand("replay", "Run the plug-in on the answers of a recorded session");
    arguments->add_option("SESSION", values->session, "Session file of a recorder or of velm export --record")
        ->required();
    arguments->add_option("OUTPUT", values->output, "Input file to write; replaced only by a complete one")->required();
    arguments->add_option("--export", values->export_number, "Which export of the session, counted from 1")
        ->type_name("NUMBER")
        ->check(CLI::PositiveNumber);
    arguments->add_option("--plugin", values->plug_in, "Run another build of the plug-in")->type_name("LIBRARY");
    arguments->add_flag("--quiet", values->quiet, "Print nothing but errors");
    arguments->footer("Examples:\n"
                      "  velm replay estuary.jsonl again.inp\n"
                      "  velm replay desktop.jsonl again.inp --plugin build/release/libvelm_export.so\n\n"
                      "The plug-in must ask what it asked then, in the same order. The first departure ends the\n"
                      "replay with exit code 1, a session that is damaged or breaks off with 2.");
    return {arguments, [values] { return replay_session(*values); }};
}

} // namespace velm
