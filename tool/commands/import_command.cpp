#include "input_file/input_file.hpp"
#include "model/words.hpp"
#include "model_store/model_store.hpp"
#include "tool/commands/commands.hpp"
#include "tool/files/file_arguments.hpp"
#include "tool/files/file_kind.hpp"
#include "tool/files/file_name.hpp"
#include "tool/files/model_file.hpp"
#include "tool/system/progress_bar.hpp"
#include "tool/system/terminal.hpp"

#include <CLI/CLI.hpp>

#include <chrono>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <new>
#include <system_error>

namespace velm {
namespace {

namespace fs = std::filesystem;

struct ImportArguments {
    FileName input;
    FileName model;
    bool force = false;
    bool lenient = false;
    bool quiet = false;
};

Standing standing(const ImportArguments& arguments)
{
    return arguments.force ? Standing::replaced : Standing::refused;
}

void check(const ImportArguments& arguments)
{
    refuse_stream(arguments.input, "FILE", "an input file is read from a file; give a file name");
    refuse_stream(arguments.model, "MODEL", "SQLite keeps a database in a file, not in a stream; give a file name");
    if (kind_of_file(arguments.input) == FileKind::database) {
        throw ToolError(ExitCode::model_unreadable, arguments.input + " is a database already; give an input file");
    }
    refuse_one_file({{"FILE", arguments.input}, {"MODEL", arguments.model}});
    try {
        refuse_unless_free(arguments.model, real_place(arguments.model), standing(arguments));
    } catch (const FileError& error) {
        std::error_code unknown;
        const bool may_be_forced = !arguments.force && fs::is_regular_file(arguments.model, unknown);
        throw FileError(std::string(error.what()) + (may_be_forced ? ", or replace it with --force" : ""));
    }
}

InputFile read(const ImportArguments& arguments)
{
    std::error_code unknown; // then the bar shows no end
    const std::uintmax_t size = fs::file_size(arguments.input, unknown);
    ProgressBar bar("import", "bytes", unknown ? 0 : size, arguments.quiet);
    ReadOptions options;
    options.on_progress = [&](std::uint64_t bytes) { bar.show(bytes); };
    try {
        return read_input_file(fs::path(arguments.input), options);
    } catch (const std::system_error& error) {
        throw ToolError(ExitCode::model_unreadable, error.what());
    } catch (const std::bad_alloc&) {
        throw ToolError(ExitCode::model_unreadable,
                        arguments.input + " cannot be imported: it does not fit into memory");
    }
}

/// Whether nothing is wrong but what --lenient lets pass: values that the file does not show, and other ways to write
/// the same values.
bool is_passable(const InputFile& file)
{
    return file.about_form + file.asterisks == file.problem_count;
}

std::string problems_in_words(const ImportArguments& arguments, const InputFile& file)
{
    return list_of_problems(arguments.input.in_words(), file.problems, file.problem_count);
}

void refuse_problems(const ImportArguments& arguments, const InputFile& file)
{
    if (file.problem_count == 0 || (arguments.lenient && is_passable(file))) {
        return;
    }
    const char* const advice = is_passable(file) ? "\n  With --lenient it is imported all the same" : "";
    throw ToolError(ExitCode::model_unreadable, arguments.input + " cannot be imported, " + arguments.model +
                                                    " is not written:" + problems_in_words(arguments, file) + advice);
}

void save(const ImportArguments& arguments, const InputFile& file)
{
    ProgressBar bar("save", "rows", 0, arguments.quiet);
    try {
        save_model(file.model, arguments.model,
                   {.missing = file.gaps, .standing = standing(arguments), .on_progress = [&](std::uint64_t rows) {
                        bar.show(rows);
                    }});
    } catch (const StoreError& error) {
        throw ToolError(ExitCode::failed, problems_text(arguments.model + " cannot be written:", error));
    }
}

void print_summary(const ImportArguments& arguments, const InputFile& file, double seconds)
{
    std::cerr << "velm: " << arguments.model << ": " << counted(file.model.systems.size(), "system") << " and "
              << counted(file.model.segments.size(), "segment") << " from " << file.records << " records, "
              << file.bytes << " bytes in " << std::fixed << std::setprecision(2) << seconds << " seconds\n"
              << "velm: what an input file leaves out is not in it: time functions, parameters and constants that are "
                 "not in use, the ends of their descriptions, names of files that are not read\n";
    if (file.unused_instances != 0) {
        std::cerr << "velm: " << file.unused_instances
                  << (file.unused_instances == 1 ? " of these keeps its number" : " of these keep their numbers")
                  << ", without content, for the sake of those after them\n";
    }
}

std::string gaps_in_words(const InputFile& file)
{
    const std::size_t gaps = file.gaps.size();
    return gaps == 0 ? ""
                     : "; " + std::to_string(gaps) + (gaps == 1 ? " value is" : " values are") +
                           " NULL, to be filled before an export";
}

ExitCode import_file(const ImportArguments& arguments)
{
    const auto start = std::chrono::steady_clock::now();
    check(arguments);
    const InputFile file = read(arguments);
    refuse_problems(arguments, file);
    save(arguments, file);
    if (!arguments.quiet) {
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
        print_summary(arguments, file, seconds.count());
    }
    if (file.problem_count == 0) {
        return ExitCode::done;
    }
    print_error(arguments.model + " does not hold " + arguments.input + " as it stands" + gaps_in_words(file) + ':' +
                problems_in_words(arguments, file));
    return ExitCode::findings;
}

} // namespace

Command import_command(CLI::App& tool)
{
    auto values = std::make_shared<ImportArguments>();
    CLI::App* const arguments = tool.add_subcommand("import", "Read an input file into a model database");
    arguments->add_option("FILE", values->input, "Input file")->required();
    arguments->add_option("MODEL", values->model, "Database to create")->required();
    arguments->add_flag("--force", values->force, "Replace MODEL if it exists, once FILE has been read");
    arguments->add_flag("--lenient", values->lenient,
                        "Store NULL for fields of asterisks, and accept numbers, labels and line ends in other forms; "
                        "all of them are listed");
    arguments->add_flag("--quiet", values->quiet, "Print nothing but errors");
    arguments->footer(
        "Examples:\n"
        "  velm import estuary.inp estuary.db\n"
        "  velm import edited.inp estuary.db --force --lenient\n\n"
        "Without --lenient, exporting MODEL gives the bytes of FILE again. When FILE cannot be imported,\n"
        "all that is wrong with it is listed and MODEL is as it was.");
    return {arguments, [values] { return import_file(*values); }};
}

} // namespace velm
