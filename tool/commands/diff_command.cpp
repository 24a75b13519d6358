#include "model_diff/model_diff.hpp"
#include "model_diff/report.hpp"
#include "tool/commands/commands.hpp"
#include "tool/files/file_kind.hpp"
#include "tool/files/file_name.hpp"
#include "tool/files/model_file.hpp"
#include "tool/plug_in/exported_model.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <fstream>
#include <functional>
#include <future>
#include <iostream>
#include <iterator>
#include <string>

namespace velm {
namespace {

struct DiffArguments {
    FileName old_file;
    FileName new_file;
    FileName plug_in; ///< empty: the tool's own
    double tolerance = 0;
    bool summary = false;
    bool all = false;
    bool json = false;
    bool quiet = false;
};

/// The model of a file. With `as_exported`, a database's values are those that its input file shows.
Model read(const FileName& file, FileKind kind, bool as_exported, bool quiet, const DiffArguments& arguments)
{
    Model model = read_model_file(file, {.quiet = quiet}).model;
    if (kind == FileKind::input_file || !as_exported) {
        return model;
    }
    return model_as_exported(PlugIn(arguments.plug_in), model, file, quiet);
}

bool have_the_same_bytes(const std::string& one, const std::string& other)
{
    std::ifstream first(one, std::ios::binary);
    std::ifstream second(other, std::ios::binary);
    using Bytes = std::istreambuf_iterator<char>;
    return std::equal(Bytes(first), Bytes(), Bytes(second), Bytes());
}

ExitCode compare(const DiffArguments& arguments)
{
    const FileKind old_kind = kind_of_file(arguments.old_file);
    const FileKind new_kind = kind_of_file(arguments.new_file);
    const bool as_exported = old_kind != new_kind;
    // both at once; what is wrong with the old file is said first
    std::future<Model> new_model = std::async(std::launch::async, read, std::cref(arguments.new_file), new_kind,
                                              as_exported, true, std::cref(arguments));
    const Model old_model = read(arguments.old_file, old_kind, as_exported, arguments.quiet, arguments);
    const std::vector<Difference> found = differences(old_model, new_model.get(), {arguments.tolerance});
    const bool both_input_files = !as_exported && old_kind == FileKind::input_file;
    const bool form_alone = found.empty() && arguments.tolerance == 0 && both_input_files &&
                            !have_the_same_bytes(arguments.old_file, arguments.new_file);
    if (arguments.json) {
        write_difference_json(std::cout, found, arguments.old_file.text(), arguments.new_file.text(), form_alone,
                              arguments.all);
    } else if (form_alone) {
        std::cout << "the same model; the files differ in label text, line ends or fill alone\n";
    } else {
        std::cout << (arguments.summary ? difference_summary(found) : difference_lines(found, arguments.all));
    }
    return found.empty() ? ExitCode::done : ExitCode::findings;
}

} // namespace

Command diff_command(CLI::App& tool)
{
    auto values = std::make_shared<DiffArguments>();
    CLI::App* const arguments = tool.add_subcommand("diff", "Say in what two models differ");
    arguments->add_option("OLD", values->old_file, "Input file or model database")->required();
    arguments->add_option("NEW", values->new_file, "Input file or model database")->required();
    CLI::Option* const summary = arguments->add_flag("--summary", values->summary, "Print a line for each section");
    arguments->add_flag("--all", values->all, "Print every number of a series that differs")->excludes(summary);
    arguments->add_flag("--json", values->json, "Print the differences as JSON")->excludes(summary);
    arguments
        ->add_option("--tolerance", values->tolerance,
                     "Take numbers for the same that differ by at most this part of the larger one; 0 when not given")
        ->check(CLI::Range(0.0, 1.0))
        ->type_name("PART");
    arguments
        ->add_option("--plugin", values->plug_in,
                     "Compare an input file with the export of another build of the plug-in")
        ->type_name("LIBRARY");
    arguments->add_flag("--quiet", values->quiet, "Print no progress");
    arguments->footer("Examples:\n"
                      "  velm diff before.db after.db\n"
                      "  velm diff estuary.db estuary.inp --summary\n"
                      "  velm diff old.inp new.inp --tolerance 1e-6 --all\n\n"
                      "A database is compared with an input file as the input file that it exports, so that only\n"
                      "other values count, not the digits that an export loses. Exit codes: 0 the same model, 1\n"
                      "different, 2 usage, 3 a file cannot be read.");
    return {arguments, [values] { return compare(*values); }};
}

} // namespace velm
