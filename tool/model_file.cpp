#include "tool/model_file.hpp"

#include "tool/exit_code.hpp"
#include "tool/file_kind.hpp"
#include "tool/operating_system.hpp"
#include "tool/progress_bar.hpp"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <new>

namespace velm {
namespace {

constexpr auto why_no_stream = "SQLite keeps a database in a file, not in a stream; give a file name";

std::string text_of(const FileName& file)
{
    std::error_code missing;
    std::ifstream stream;
    if (!std::filesystem::is_directory(file.text(), missing)) {
        stream.open(file.text(), std::ios::binary);
    }
    std::string text{std::istreambuf_iterator<char>(stream), {}};
    if (!stream.is_open() || text.find('\0') != std::string::npos) {
        throw ToolError(ExitCode::usage, file + " is no file of SQL statements that can be read; give a text file");
    }
    return text;
}

} // namespace

std::string problems_text(const std::string& heading, const StoreError& error)
{
    if (error.problems.size() == 1 && error.problems.front().table.empty()) {
        return error.problems.front().text();
    }
    std::string text = heading;
    for (const StoreProblem& problem : error.problems) {
        text += "\n  " + problem.text();
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

Model read_model_file(const FileName& database, bool quiet)
{
    return read_changed_model_file(database, "", quiet);
}

Model read_changed_model_file(const FileName& database, const FileName& changes, bool quiet)
{
    refuse_stream(database, "MODEL", why_no_stream);
    if (kind_of_file(database) == FileKind::input_file) {
        const std::string why = " is an input file; velm import makes a database of it, which is wanted here";
        throw ToolError(ExitCode::model_unreadable, database + why);
    }
    ProgressBar bar("load", "rows", 0, !quiet && has_capable_terminal());
    LoadOptions options;
    options.on_progress = [&](std::uint64_t rows) { bar.show(rows); };
    if (!changes.empty()) {
        options.changes = {text_of(changes), changes.in_words()};
        options.on_change = [&](std::size_t line, std::int64_t rows) {
            if (rows == 0 && !quiet) {
                std::cerr << "velm: " << changes << ':' << line << ": the statement changes no row\n";
            }
        };
    }
    const std::string name = database.in_words() + (changes.empty() ? "" : " with the changes of " + changes);
    try {
        return load_model(database, options);
    } catch (const StoreError& error) {
        throw ToolError(ExitCode::model_unreadable, problems_text(name + " cannot be read:", error));
    } catch (const std::bad_alloc&) {
        throw ToolError(ExitCode::model_unreadable, database + " cannot be read: it does not fit into memory");
    }
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
