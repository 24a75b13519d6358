#include "session/model_of_session.hpp"

#include "model_store/model_store.hpp"
#include "tool/commands/commands.hpp"
#include "tool/files/file_arguments.hpp"
#include "tool/files/file_name.hpp"
#include "tool/files/model_file.hpp"

#include <CLI/CLI.hpp>

namespace velm {
namespace {

struct SessionToModelArguments {
    FileName session;
    NewModelFile model;
    std::uint64_t export_number = 1;
};

Model read_model(const SessionToModelArguments& arguments)
{
    try {
        return model_of_session(arguments.session, arguments.export_number);
    } catch (const NoModel& error) {
        throw ToolError(ExitCode::findings, std::string("no model gives these answers: ") + error.what());
    }
}

} // namespace

Command session_to_model_command(CLI::App& tool)
{
    auto values = std::make_shared<SessionToModelArguments>();
    CLI::App* const arguments =
        tool.add_subcommand("session-to-model", "Make a model database from a recorded session");
    arguments->add_option("SESSION", values->session, "Session file of a recorder or of velm export --record")
        ->required();
    values->model.add_to(*arguments);
    arguments->add_option("--export", values->export_number, "Which export of the session, counted from 1")
        ->type_name("NUMBER")
        ->check(CLI::PositiveNumber);
    arguments->footer("Example:\n"
                      "  velm session-to-model desktop.jsonl river.db\n"
                      "  velm export river.db river.inp\n\n"
                      "The database exports the file that was exported during the recording. What an export does not\n"
                      "ask for is not in a session: unused constants, parameters and time functions have no values.");
    return {arguments, [values] {
                refuse_stream(values->session, "SESSION", "it is read more than once; give a file name");
                refuse_unless_regular(values->session, ExitCode::usage);
                const auto create = [&] { save_model(read_model(*values), values->model.name); };
                values->model.create(create, "the model of " + values->session);
                return ExitCode::done;
            }};
}

} // namespace velm
