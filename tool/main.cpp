#include "tool/commands.hpp"
#include "tool/nearest_name.hpp"
#include "tool/terminal.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <iostream>

namespace velm {
namespace {

constexpr auto help_footer = "Examples:\n"
                             "  velm example estuary.db\n"
                             "  velm export estuary.db estuary.inp\n"
                             "  velm COMMAND --help        arguments and examples of one command\n\n"
                             "Exit codes:\n"
                             "  0  done\n"
                             "  1  findings: something was looked for and found\n"
                             "  2  usage: the command line, or a file that it names, is not as it must be\n"
                             "  3  the model cannot be read\n"
                             "  4  the export failed, or another file or the output could not be written\n\n"
                             "Messages go to standard error, data to standard output.";

/// The parser would say only that a command is missing.
void refuse_unknown_command(const CLI::App& tool, int argument_count, char** arguments)
{
    const std::string first = argument_count > 1 ? arguments[1] : "-";
    std::vector<std::string> names;
    for (const CLI::App* command : tool.get_subcommands({})) {
        names.push_back(command->get_name());
    }
    if (first.starts_with('-') || std::find(names.begin(), names.end(), first) != names.end()) {
        return;
    }
    const std::string nearest = nearest_name(first, names);
    throw ToolError(ExitCode::usage, "there is no command " + first + "; " +
                                         (nearest.empty() ? "" : "did you mean " + nearest + "? ") +
                                         "See velm --help for all commands");
}

ExitCode run(int argument_count, char** arguments)
{
    CLI::App tool("Models of water quality: kept in SQLite, exported as input files of the engine.", "velm");
    tool.set_version_flag("--version", "velm " VELM_VERSION);
    tool.allow_windows_style_options(false); // a path may begin with a slash
    tool.require_subcommand(1);
    tool.footer(help_footer);
    const Command commands[] = {
        export_command(tool), check_command(tool),   diff_command(tool),   import_command(tool),
        info_command(tool),   record_command(tool),  replay_command(tool), session_to_model_command(tool),
        new_command(tool),    example_command(tool), schema_command(tool)};
    refuse_unknown_command(tool, argument_count, arguments);
    try {
        tool.parse(argument_count, arguments);
    } catch (const CLI::ParseError& error) {
        return tool.exit(error) == 0 ? ExitCode::done : ExitCode::usage;
    }
    const auto* const called = std::find_if(std::begin(commands), std::end(commands),
                                            [](const Command& command) { return command.arguments->parsed(); });
    return called->run();
}

/// Runs the tool; whatever is thrown becomes a message and an exit code.
ExitCode run_and_report(int argument_count, char** arguments)
{
    try {
        const ExitCode code = run(argument_count, arguments);
        if (!std::cout.flush()) {
            throw ToolError(ExitCode::failed, "the standard output cannot be written; is the disk full?");
        }
        return code;
    } catch (const ToolError& error) {
        print_error(error.what());
        return error.code;
    } catch (const std::bad_alloc&) {
        (void)std::fputs("velm: there is not enough memory\n", stderr);
    } catch (const std::exception& error) {
        print_error(error.what());
    } catch (...) {
        print_error("something failed that has no name");
    }
    return ExitCode::failed;
}

} // namespace
} // namespace velm

int main(int argument_count, char** arguments)
{
    try {
        return static_cast<int>(velm::run_and_report(argument_count, arguments));
    } catch (...) { // even the message found no memory
        return static_cast<int>(velm::ExitCode::failed);
    }
}
