#include "plain_text/plain_text.hpp"
#include "tool/commands/command_description.hpp"
#include "tool/commands/commands.hpp"
#include "tool/commands/documents.hpp"
#include "tool/commands/unknown_name.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace velm {
namespace {

const CLI::App& command_named(const CLI::App& tool, const std::string& name)
{
    const CLI::App* const command = find_command(tool, name);
    if (command == nullptr) {
        throw unknown_command(tool, name);
    }
    return *command;
}

/// The names of the pages. Throws ToolError when there are none.
std::vector<std::string> installed_documents()
{
    std::vector<std::string> names = document_names();
    if (names.empty()) {
        throw ToolError(ExitCode::failed, "the documents are not installed here; they lie in the folder docs of the "
                                          "package and of the sources");
    }
    return names;
}

ExitCode print_document(const std::string& page)
{
    const std::vector<std::string> names = installed_documents();
    if (page.empty()) {
        for (const std::string& name : names) {
            std::string heading;
            std::getline(std::ifstream(document(name)), heading);
            std::cout << name << std::string(name.size() < 16 ? 16 - name.size() : 1, ' ')
                      << heading.substr(heading.find_first_not_of("# ")) << '\n';
        }
        return ExitCode::done;
    }
    if (std::find(names.begin(), names.end(), page) == names.end()) {
        throw unknown_name("page", page, names, "velm docs lists all");
    }
    std::cout << std::ifstream(document(page), std::ios::binary).rdbuf();
    return ExitCode::done;
}

} // namespace

const CLI::App* find_command(const CLI::App& tool, const std::string& name)
{
    const std::vector<const CLI::App*> found =
        tool.get_subcommands([&](const CLI::App* command) { return command->get_name() == name; });
    return found.empty() ? nullptr : found.front();
}

ToolError unknown_command(const CLI::App& tool, const std::string& name)
{
#ifndef VELM_REPORT
    if (name == "report") {
        return {ExitCode::usage, "this velm was built without its command report; build it with VELM_REPORT=ON"};
    }
#endif
    std::vector<std::string> names;
    for (const CLI::App* command : tool.get_subcommands({})) {
        names.push_back(command->get_name());
    }
    return unknown_name("command", name, names, "velm help lists all commands");
}

Command help_command(CLI::App& tool)
{
    auto name = std::make_shared<std::string>();
    CLI::App* const arguments = tool.add_subcommand("help", "Explain a command, or list all");
    arguments->add_option("COMMAND", *name, "The command to explain");
    arguments->footer("Examples:\n"
                      "  velm help\n"
                      "  velm help export");
    return {arguments, [&tool, name] {
                std::cout << (name->empty()
                                  ? tool.get_formatter()->make_help(&tool, tool.get_name(), CLI::AppFormatMode::Normal)
                                  : command_named(tool, *name).help(tool.get_name()));
                return ExitCode::done;
            }};
}

Command docs_command(CLI::App& tool)
{
    auto page = std::make_shared<std::string>();
    CLI::App* const arguments = tool.add_subcommand("docs", "Print a page of the documents, or list them");
    arguments->add_option("PAGE", *page, "The page's name, such as findings");
    arguments->footer("Examples:\n"
                      "  velm docs\n"
                      "  velm docs model-database");
    return {arguments, [page] { return print_document(*page); }};
}

/// The section of a page from a heading that begins so to the next heading; empty when there is none.
std::string section_of_document(const std::string& page, const std::string& heading)
{
    std::ifstream file(document(page));
    std::string section;
    for (std::string line; std::getline(file, line);) {
        const bool is_heading = line.starts_with('#');
        if (is_heading && !section.empty()) {
            break;
        }
        if (!section.empty() || line.starts_with(heading)) {
            section += line + '\n';
        }
    }
    return section.substr(0, section.find_last_not_of('\n') + 1);
}

Command explain_command(CLI::App& tool)
{
    auto code = std::make_shared<std::string>();
    CLI::App* const arguments = tool.add_subcommand("explain", "Explain a finding of velm check");
    arguments->add_option("CODE", *code, "The finding's code")->required();
    arguments->footer("Example:\n"
                      "  velm explain V204");
    return {arguments, [code] {
                static_cast<void>(installed_documents());
                const std::string section = section_of_document("findings", "### " + in_capitals(*code) + ' ');
                if (section.empty()) {
                    throw ToolError(ExitCode::usage,
                                    "there is no finding " + printable(*code) + "; velm docs findings lists all");
                }
                std::cout << section.substr(4) << '\n';
                return ExitCode::done;
            }};
}

/// For packages and shells, not for people: what the man pages and completions are made of.
Command describe_command(CLI::App& tool)
{
    auto manual = std::make_shared<bool>(false);
    CLI::App* const arguments =
        tool.add_subcommand("describe", "Print completions of a command line, or a manual page");
    arguments->group(""); // hidden
    arguments->add_flag("--manual", *manual, "The manual page of the command that follows, or of the tool");
    arguments->prefix_command(); // all else is the command line to complete
    arguments->footer("Examples:\n"
                      "  velm describe --manual export\n"
                      "  velm describe check --fail");
    return {arguments, [&tool, arguments, manual] {
                const std::vector<std::string> words = arguments->remaining();
                const CLI::App* const command =
                    !*manual || words.empty() ? nullptr : &command_named(tool, words.front());
                std::cout << (*manual ? manual_page(tool, command) : completions(tool, words));
                return ExitCode::done;
            }};
}

} // namespace velm
