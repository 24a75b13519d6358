#pragma once

#include "tool/exit_code.hpp"

#include <functional>
#include <string>

namespace CLI {
class App;
}

namespace velm {

/// A command of the tool: its arguments, which the command line parser fills, and what it does with them.
/// run() may throw: ToolError, StoreError or anything else that is a std::exception.
struct Command {
    CLI::App* arguments;
    std::function<ExitCode()> run;
};

/// Each makes one command below `tool`. main.cpp lists them in the order of the help.
Command export_command(CLI::App& tool);
Command check_command(CLI::App& tool);
Command diff_command(CLI::App& tool);
Command import_command(CLI::App& tool);
Command record_command(CLI::App& tool);
Command replay_command(CLI::App& tool);
Command session_to_model_command(CLI::App& tool);
Command new_command(CLI::App& tool);
Command example_command(CLI::App& tool);
Command schema_command(CLI::App& tool);
Command info_command(CLI::App& tool);
Command report_command(CLI::App& tool); ///< only with VELM_REPORT
Command help_command(CLI::App& tool);
Command docs_command(CLI::App& tool);
Command explain_command(CLI::App& tool);
Command describe_command(CLI::App& tool);

/// The command of that name; null when there is none.
[[nodiscard]] const CLI::App* find_command(const CLI::App& tool, const std::string& name);

/// The refusal of a command that there is not, with the name that is nearest.
[[nodiscard]] ToolError unknown_command(const CLI::App& tool, const std::string& name);

} // namespace velm
