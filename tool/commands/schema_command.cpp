#include "model_store/model_store.hpp"
#include "tool/commands/commands.hpp"

#include <CLI/CLI.hpp>

#include <iostream>

namespace velm {

Command schema_command(CLI::App& tool)
{
    CLI::App* const arguments = tool.add_subcommand("schema", "Print the SQL that creates a model database");
    arguments->footer("Example:\n"
                      "  velm schema | less\n\n"
                      "Comments give the unit and meaning of each column.");
    return {arguments, [] {
                std::cout << model_schema();
                return ExitCode::done;
            }};
}

} // namespace velm
