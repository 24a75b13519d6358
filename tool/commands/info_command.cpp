#include "tool/commands/commands.hpp"
#include "tool/commands/model_info.hpp"
#include "tool/files/file_name.hpp"
#include "tool/files/model_file.hpp"
#include "tool/system/terminal.hpp"

#include <CLI/CLI.hpp>

#include <iostream>
#include <memory>
#include <vector>

namespace velm {
namespace {

struct InfoArguments {
    std::vector<FileName> files;
    InfoTables tables;
    bool json = false;
    bool quiet = false;
};

/// Says what the files have that can be read, and of each other one why not.
ExitCode print_all(const InfoArguments& arguments)
{
    JsonText json;
    json.begin_object();
    json.begin_array("files");
    ExitCode code = ExitCode::done;
    for (bool first = true; const FileName& file : arguments.files) {
        try {
            ModelFileOptions reading;
            reading.quiet = arguments.quiet;
            reading.unsure_values = true;
            const ModelFile read = read_model_file(file, reading);
            const ModelInfo info(file.text(), read);
            if (arguments.json) {
                put_info(json, info);
            } else {
                std::cout << (first ? "" : "\n");
                print_info(std::cout, info, arguments.tables);
            }
            first = false;
            if (read.errors != 0) {
                print_error("what is said of " + file +
                            " is incomplete, for not all of its values can be read; velm check lists what is wrong:" +
                            read.first_errors);
                code = ExitCode::model_unreadable;
            }
        } catch (const ToolError& error) {
            if (error.code != ExitCode::model_unreadable) {
                throw;
            }
            print_error(error.what());
            code = error.code;
        }
    }
    json.end_array();
    json.end_object();
    if (arguments.json) {
        std::cout << json.text();
    }
    return code;
}

} // namespace

Command info_command(CLI::App& tool)
{
    auto values = std::make_shared<InfoArguments>();
    CLI::App* const arguments = tool.add_subcommand("info", "Say what models have and what their water does");
    arguments->add_option("FILE", values->files, "Model databases and input files, told apart by their content")
        ->required();
    arguments->add_flag("--series", values->tables.series, "Also each series: pairs, days, steps, gaps, values");
    arguments->add_flag("--segments", values->tables.segments,
                        "Also each segment: volume, mean flows, residence time, connections");
    arguments->add_flag("--json", values->json, "Print all of it as JSON; docs/info.md names its members");
    arguments->add_flag("--quiet", values->quiet, "Print no progress");
    arguments->footer(
        "Examples:\n"
        "  velm info estuary.db\n"
        "  velm info estuary.db estuary.inp --series --segments\n\n"
        "Values are after their scale and conversion factors. Exit codes: 0 done, 2 usage, 3 a file cannot\n"
        "be read or not all of it; all that can is said.");
    return {arguments, [values] { return print_all(*values); }};
}

} // namespace velm
