#include "tool/files/model_file.hpp"

#include "input_file/form_rules.hpp"
#include "input_file/input_file.hpp"
#include "model_check/report.hpp"
#include "tool/exit_code.hpp"
#include "tool/files/file_arguments.hpp"
#include "tool/system/progress_bar.hpp"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <new>
#include <system_error>
#include <utility>

namespace velm {
namespace {

constexpr auto why_no_stream = "SQLite keeps a database in a file, not in a stream; give a file name";

std::string text_of(const FileName& file)
{
    refuse_stream(file, "The file of --sql", "it is read from a file; give a file name");
    refuse_unless_regular(file, ExitCode::usage);
    std::ifstream stream(file, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(stream), {}};
    if (!stream.is_open() || text.find('\0') != std::string::npos) {
        throw ToolError(ExitCode::usage, file + " is no file of SQL statements that can be read; give a text file");
    }
    return text;
}

} // namespace

std::string problems_text(const std::string& heading, const StoreError& error)
{
    if (error.problems.size() == 1 && error.problems.front().address.table.empty()) {
        return in_words(error.problems.front());
    }
    std::string text = heading;
    for (const Finding& problem : error.problems) {
        text += "\n  " + in_words(problem);
    }
    return error.more ? text + "\n  and more problems like these" : text;
}

void refuse_stream(const FileName& file, const std::string& argument, const std::string& reason)
{
    if (file.empty()) {
        throw ToolError(ExitCode::usage, argument + " is empty; give a file name");
    }
    if (file.text() == "-") {
        throw ToolError(ExitCode::usage, argument + " cannot be '-': " + reason);
    }
}

namespace {

Model read_database(const FileName& database, const ModelFileOptions& options)
{
    ProgressBar bar("load", "rows", 0, options.quiet);
    LoadOptions loading;
    loading.on_progress = [&](std::uint64_t rows) { bar.show(rows); };
    if (!options.changes.empty()) {
        loading.changes = {text_of(options.changes), options.changes.in_words()};
        loading.on_change = [&](std::size_t line, std::int64_t rows) {
            if (rows == 0 && !options.quiet) {
                std::cerr << "velm: " << options.changes << ':' << line << ": the statement changes no row\n";
            }
        };
    }
    const std::string name =
        database.in_words() + (options.changes.empty() ? "" : " with the changes of " + options.changes);
    try {
        return load_model(database, loading);
    } catch (const StoreError& error) {
        throw ToolError(ExitCode::model_unreadable, problems_text(name + " cannot be read:", error));
    }
}

} // namespace

ModelFile read_input_model(const std::filesystem::path& file, const std::string& name, const ModelFileOptions& options)
{
    std::error_code unknown; // then the bar shows no end
    const std::uintmax_t size = std::filesystem::file_size(file, unknown);
    ProgressBar bar("read", "bytes", unknown ? 0 : size, options.quiet);
    ReadOptions reading;
    reading.on_progress = [&](std::uint64_t bytes) { bar.show(bytes); };
    constexpr std::size_t most_listed = 5;
    std::vector<Finding> first;
    reading.most_problems = 0;
    reading.on_problem = [&](const Finding& one) {
        if (first.size() < most_listed && !form_rules::is_about_form(*one.rule)) {
            first.push_back(one);
        }
    };
    try {
        InputFile read = read_input_file(file, reading);
        const std::uint64_t errors = read.problem_count - read.about_form;
        std::string list = list_of_problems(name, first, errors);
        if (errors != 0 && !options.unsure_values) {
            throw ToolError(
                ExitCode::model_unreadable,
                name +
                    " cannot be used, for not all of its values can be read; velm check lists what is wrong:" + list);
        }
        return {std::move(read.model), FileKind::input_file, errors, std::move(list)};
    } catch (const std::system_error& error) {
        throw ToolError(ExitCode::model_unreadable, error.what());
    }
}

ModelFile read_model_file(const FileName& file, const ModelFileOptions& options)
{
    refuse_stream(file, "MODEL", "it is read more than once, which a stream cannot be; give a file name");
    try {
        const FileKind kind = kind_of_file(file);
        if (kind == FileKind::database) {
            return {read_database(file, options), kind};
        }
        if (!options.changes.empty()) {
            throw ToolError(ExitCode::usage, file + " is an input file, which SQL cannot change; import it first");
        }
        return read_input_model(file, file.in_words(), options);
    } catch (const std::bad_alloc&) {
        throw ToolError(ExitCode::model_unreadable, file + " cannot be read: it does not fit into memory");
    }
}

std::string list_of_problems(const std::string& file, std::span<const Finding> problems, std::uint64_t count)
{
    std::string lines;
    for (const Finding& problem : problems) {
        lines += "\n  " + line_of(file, problem);
    }
    const std::uint64_t others = count - problems.size();
    return others == 0 ? lines : lines + "\n  and " + std::to_string(others) + " more";
}

void NewModelFile::add_to(CLI::App& arguments)
{
    arguments.add_option("MODEL", name, "Database to create; an existing file is never touched")->required();
    arguments.add_flag("--quiet", quiet, "Print nothing but errors");
}

void NewModelFile::create(const std::function<void()>& create, const std::string& what) const
{
    refuse_stream(name, "MODEL", why_no_stream);
    try {
        create();
    } catch (const StoreError& error) {
        throw ToolError(ExitCode::failed, problems_text(name + " cannot be created:", error));
    }
    if (!quiet) {
        std::cerr << "velm: " << name << ": " << what << '\n';
    }
}

} // namespace velm
