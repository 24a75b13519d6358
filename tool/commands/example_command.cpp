#include "model_store/model_store.hpp"
#include "tool/commands/commands.hpp"
#include "tool/files/file_name.hpp"
#include "tool/files/model_file.hpp"

#include <CLI/CLI.hpp>

namespace velm {

extern const std::string_view example_statements; // examples/estuary.sql, carried in the tool

Command example_command(CLI::App& tool)
{
    auto model = std::make_shared<NewModelFile>();
    CLI::App* const arguments = tool.add_subcommand("example", "Create the database of the bundled estuary model");
    model->add_to(*arguments);
    arguments->footer("Example:\n"
                      "  velm example estuary.db\n"
                      "  velm info estuary.db\n"
                      "  velm export estuary.db estuary.inp");
    return {arguments, [model] {
                const auto create = [&] {
                    create_database(std::string(model_schema()) + '\n' + std::string(example_statements), model->name);
                };
                model->create(create, "the estuary model");
                return ExitCode::done;
            }};
}

} // namespace velm
