#include "tool/commands/command_description.hpp"

#include "tool/commands/commands.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cctype>
#include <string_view>

namespace velm {
namespace {

/// Text for man(7): backslashes and hyphens escaped, and no line begins with a control character.
std::string escaped(std::string_view text)
{
    std::string result;
    for (const char character : text) {
        if ((character == '.' || character == '\'') && (result.empty() || result.back() == '\n')) {
            result += "\\&";
        }
        result += character == '\\' ? "\\e" : character == '-' ? "\\-" : std::string(1, character);
    }
    return result;
}

/// "--fail-on LEVEL", "FILE..."
std::string synopsis_of(const CLI::Option& option)
{
    const bool many = option.get_items_expected_max() > 1;
    if (option.get_positional()) {
        return option.get_name(true) + (many ? "..." : "");
    }
    std::string names;
    for (const std::string& name : option.get_snames()) {
        names += (names.empty() ? "-" : ", -") + name;
    }
    for (const std::string& name : option.get_lnames()) {
        names += (names.empty() ? "--" : ", --") + name;
    }
    if (option.get_items_expected_max() == 0) {
        return names;
    }
    const std::string type = option.get_type_name();
    return names + ' ' + type.substr(0, type.find(':'));
}

/// "note", "warning", "error" of an option whose values are LEVEL:{note,warning,error}
std::vector<std::string> choices_of(const CLI::Option& option)
{
    const std::string type = option.get_type_name();
    const std::size_t first = type.find('{');
    const std::size_t last = type.find('}');
    return last == std::string::npos ? std::vector<std::string>{}
                                     : CLI::detail::split(type.substr(first + 1, last - first - 1), ',');
}

std::vector<const CLI::App*> commands_of(const CLI::App& tool)
{
    return tool.get_subcommands([](const CLI::App* command) { return !command->get_group().empty(); });
}

std::string options_of(const CLI::App& command)
{
    std::string text;
    for (const CLI::Option* option : command.get_options()) {
        const std::string choices = CLI::detail::join(choices_of(*option), ", ");
        text += ".TP\n.B " + escaped(synopsis_of(*option)) + '\n' + escaped(option->get_description()) +
                (choices.empty() ? "" : "; one of " + choices) + '\n';
    }
    return text;
}

/// A footer's paragraphs; those of indented lines keep their lines.
std::string notes_of(const CLI::App& command)
{
    std::string text = ".SH NOTES\n";
    for (const std::string& paragraph :
         CLI::detail::split(CLI::detail::find_and_replace(escaped(command.get_footer()), "\n\n", "\f"), '\f')) {
        const bool lines = paragraph.find("\n  ") != std::string::npos;
        text += lines ? ".PP\n.nf\n" + paragraph + "\n.fi\n" : ".PP\n" + paragraph + '\n';
    }
    return text;
}

std::string lines_of(const std::vector<const CLI::App*>& commands)
{
    std::string text;
    for (const CLI::App* command : commands) {
        text += command->get_name() + '\t' + command->get_description() + '\n';
    }
    return text;
}

std::string words_of(const std::vector<std::string>& choices)
{
    return choices.empty() ? "" : CLI::detail::join(choices, "\n") + '\n';
}

} // namespace

std::string in_capitals(std::string text)
{
    std::ranges::transform(text, text.begin(), [](unsigned char letter) { return std::toupper(letter); });
    return text;
}

std::string manual_page(const CLI::App& tool, const CLI::App* command)
{
    const CLI::App& page = command == nullptr ? tool : *command;
    const std::string name = tool.get_name() + (command == nullptr ? "" : '-' + command->get_name());
    std::string text = ".TH " + in_capitals(name) + " 1 \"\" \"velm " VELM_VERSION "\" \"User Commands\"\n.SH NAME\n" +
                       escaped(name + " - " + page.get_description()) + "\n.SH SYNOPSIS\n.B " + tool.get_name();
    if (command == nullptr) {
        text += "\n.I COMMAND\n[ARGUMENTS]\n.SH COMMANDS\n";
        for (const CLI::App* each : commands_of(tool)) {
            text += ".TP\n.BR " + escaped(tool.get_name() + '-' + each->get_name()) + " (1)\n" +
                    escaped(each->get_description()) + '\n';
        }
    } else {
        text += ' ' + command->get_name() + "\n[OPTIONS]";
        for (const CLI::Option* option : command->get_options()) {
            if (option->get_positional()) {
                text += (option->get_required() ? " " : " [") + escaped(synopsis_of(*option)) +
                        (option->get_required() ? "" : "]");
            }
        }
        text += '\n';
    }
    text += ".SH OPTIONS\n" + options_of(page) + notes_of(page);
    return command == nullptr ? text : text + ".SH SEE ALSO\n.BR velm (1)\n";
}

std::string completions(const CLI::App& tool, const std::vector<std::string>& words)
{
    if (words.size() <= 1) {
        return lines_of(commands_of(tool));
    }
    const CLI::App* const command = find_command(tool, words.front());
    if (command == nullptr) {
        return {};
    }
    if (command->get_name() == "help") {
        return lines_of(commands_of(tool));
    }
    const std::string& before = words[words.size() - 2];
    const CLI::Option* const asked = before.starts_with("--") ? command->get_option_no_throw(before) : nullptr;
    if (asked != nullptr && asked->get_items_expected_max() > 0) {
        return words_of(choices_of(*asked));
    }
    std::string text;
    for (const CLI::Option* option : command->get_options()) {
        for (const std::string& name :
             words.back().starts_with('-') ? option->get_lnames() : std::vector<std::string>{}) {
            text += "--" + name + '\t' + option->get_description() + '\n';
        }
        text += option->get_positional() && !words.back().starts_with('-') ? words_of(choices_of(*option)) : "";
    }
    return text;
}

} // namespace velm
