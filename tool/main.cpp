#include "model_store/model_store.hpp"
#include "plain_text/plain_text.hpp"
#include "session/session_reader.hpp"
#include "tool/commands/commands.hpp"
#include "tool/commands/documents.hpp"
#include "tool/commands/unknown_name.hpp"
#include "tool/system/operating_system.hpp"
#include "tool/system/terminal.hpp"
#include "whole_file/place.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

namespace velm {
namespace {

constexpr auto help_footer = "Examples:\n"
                             "  velm example estuary.db\n"
                             "  velm export estuary.db estuary.inp\n"
                             "  velm help COMMAND          arguments and examples of one command\n\n"
                             "Exit codes:\n"
                             "  0  done\n"
                             "  1  findings: something was looked for and found\n"
                             "  2  usage: the command line, or a file that it names, is not as it must be\n"
                             "  3  the model cannot be read\n"
                             "  4  the export failed, or another file or the output could not be written\n\n"
                             "Messages go to standard error, data to standard output.";

/// A command and the page of the documents that explains more.
struct Entry {
    Command (*make)(CLI::App& tool);
    const char* page;
};

/// In the order of the help.
constexpr Entry entries[] = {
    {export_command, "file-format"},
    {check_command, "findings"},
    {diff_command, "findings"},
    {import_command, "file-format"},
    {info_command, "info"},
#ifdef VELM_REPORT
    {report_command, "report"},
#endif
    {record_command, "session-format"},
    {replay_command, "session-format"},
    {session_to_model_command, "session-format"},
    {new_command, "model-database"},
    {example_command, "model-database"},
    {schema_command, "model-database"},
    {help_command, nullptr},
    {docs_command, nullptr},
    {explain_command, "findings"},
    {describe_command, nullptr},
};

/// Below the help of a command: where more is to be read, in the sources and, unless that is for a package, here.
std::string where_to_read(const std::string& page, bool for_package)
{
    const std::filesystem::path here = for_package ? std::filesystem::path() : document(page);
    return "\n\nMore: velm docs " + page + " (docs/" + page + ".md" + (here.empty() ? "" : ", here " + shown(here)) +
           ")";
}

std::vector<Command> make_commands(CLI::App& tool, bool for_package)
{
    std::vector<Command> commands;
    for (const Entry& entry : entries) {
        commands.push_back(entry.make(tool));
        CLI::App& arguments = *commands.back().arguments;
        arguments.add_option_function<std::string>("--color", choose_color, "Colour messages: auto when not given")
            ->type_name("WHEN")
            ->check(CLI::IsMember({"auto", "always", "never"}))
            ->trigger_on_parse();
        if (entry.page != nullptr) {
            arguments.footer(arguments.get_footer() + where_to_read(entry.page, for_package));
        }
    }
    return commands;
}

/// The first option of a command line that the command does not have, or nothing.
std::string unknown_option(const CLI::App& command)
{
    const std::vector<std::string> left = command.remaining();
    const auto option = std::find_if(left.begin(), left.end(),
                                     [](const std::string& word) { return word.size() > 1 && word.starts_with('-'); });
    return option == left.end() ? "" : option->substr(0, option->find('='));
}

/// What is wrong with a command line, in our words, and the line that asks for help.
ToolError refusal(const CLI::App& tool, const CLI::ParseError& error)
{
    const std::vector<CLI::App*> called = tool.get_subcommands();
    const CLI::App& command = called.empty() ? tool : *called.front();
    const std::string asks = called.empty() ? "velm help" : "velm help " + command.get_name();
    const std::string option = unknown_option(command);
    if (const std::string ahead = unknown_option(tool); option.empty() && !ahead.empty()) {
        return {ExitCode::usage, ahead + " stands before the command; options follow it; " + asks + " lists all"};
    }
    if (option.empty()) {
        const std::string what = called.empty() ? "a command is missing" : printable(error.what());
        return {ExitCode::usage, what + "; " + asks + " explains"};
    }
    std::vector<std::string> names;
    for (const CLI::Option* each : command.get_options()) {
        for (const std::string& name : each->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    return unknown_name("option", option, names, asks + " lists all");
}

ExitCode run(int argument_count, char** arguments)
{
    CLI::App tool("Models of water quality: kept in SQLite, exported as input files of the engine", "velm");
    tool.set_version_flag("-V,--version", [] { return "velm " VELM_VERSION "\n" + store_versions(); });
    tool.allow_windows_style_options(false); // a path may begin with a slash
    tool.require_subcommand(1);
    tool.footer(help_footer);
    const std::string first = argument_count > 1 ? arguments[1] : "-";
    const std::vector<Command> commands = make_commands(tool, first == "describe");
    if (!first.starts_with('-') && find_command(tool, first) == nullptr) {
        throw unknown_command(tool, first); // the parser would say only that a command is missing
    }
    try {
        tool.parse(argument_count, arguments);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) { // help or the version was asked for
            (void)tool.exit(error);
            return ExitCode::done;
        }
        throw refusal(tool, error);
    }
    const auto called = std::find_if(commands.begin(), commands.end(),
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
    } catch (const FileError& error) {
        print_error(error.what());
        return ExitCode::usage;
    } catch (const SessionError& error) {
        print_error(error.what());
        return ExitCode::usage;
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
        velm::prepare_streams();
        return static_cast<int>(velm::run_and_report(argument_count, arguments));
    } catch (...) { // even the message found no memory
        return static_cast<int>(velm::ExitCode::failed);
    }
}
