#include "model_store/model_store.hpp"
#include "tool/commands/commands.hpp"
#include "tool/files/file_name.hpp"
#include "tool/files/model_file.hpp"

#include <CLI/CLI.hpp>

namespace velm {

Command new_command(CLI::App& tool)
{
    auto model = std::make_shared<NewModelFile>();
    CLI::App* const arguments = tool.add_subcommand("new", "Create an empty model database");
    model->add_to(*arguments);
    arguments->footer("Example:\n"
                      "  velm new river.db\n"
                      "  sqlite3 river.db \"UPDATE model SET julian_end_time = 365\"\n\n"
                      "The model table has its one row, with default values; all other tables are empty.");
    return {arguments, [model] {
                model->create(
                    [&] {
                        create_database(std::string(model_schema()) + "INSERT INTO model DEFAULT VALUES;", model->name);
                    },
                    "an empty model, to be filled with any SQLite tool");
                return ExitCode::done;
            }};
}

} // namespace velm
