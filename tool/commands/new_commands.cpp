#include "model_store/model_store.hpp"
#include "tool/commands/commands.hpp"
#include "tool/files/file_name.hpp"
#include "tool/files/model_file.hpp"

#include <CLI/CLI.hpp>

#include <iostream>

namespace velm {

extern const std::string_view example_statements; // examples/estuary.sql, carried in the tool

namespace {

/// A command that makes a database of the schema and of `statements`.
Command creation_command(CLI::App& tool, const char* name, const char* description, std::string_view statements,
                         const char* what, const char* footer)
{
    auto model = std::make_shared<NewModelFile>();
    CLI::App* const arguments = tool.add_subcommand(name, description);
    model->add_to(*arguments);
    arguments->footer(footer);
    return {arguments, [=] {
                const std::string sql = std::string(model_schema()) + '\n' + std::string(statements);
                model->create([&] { create_database(sql, model->name); }, what);
                return ExitCode::done;
            }};
}

} // namespace

Command new_command(CLI::App& tool)
{
    return creation_command(tool, "new", "Create an empty model database", "INSERT INTO model DEFAULT VALUES;",
                            "an empty model, to be filled with any SQLite tool",
                            "Example:\n"
                            "  velm new river.db\n"
                            "  sqlite3 river.db \"UPDATE model SET julian_end_time = 365\"\n\n"
                            "The model table has its one row, with default values; all other tables are empty.");
}

Command example_command(CLI::App& tool)
{
    return creation_command(tool, "example", "Create the database of the bundled estuary model", example_statements,
                            "the estuary model",
                            "Example:\n"
                            "  velm example estuary.db\n"
                            "  velm info estuary.db\n"
                            "  velm export estuary.db estuary.inp");
}

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
