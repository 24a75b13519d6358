#include "tool/model_file.hpp"

#include "tool/exit_code.hpp"
#include "tool/operating_system.hpp"
#include "tool/progress_bar.hpp"
#include "tool/replaced_file.hpp"

#include <filesystem>
#include <iostream>
#include <new>

namespace velm {
namespace {

constexpr auto why_no_stream = "SQLite keeps a database in a file, not in a stream; give a file name";

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

void refuse_stream(const std::string& file, const std::string& argument, const std::string& reason)
{
    if (file.empty()) {
        throw ToolError(ExitCode::usage, argument + " is empty; give a file name");
    }
    if (file == "-") {
        throw ToolError(ExitCode::usage, argument + " cannot be '-': " + reason);
    }
}

Model read_model_file(const std::string& database, bool quiet)
{
    refuse_stream(database, "MODEL", why_no_stream);
    ProgressBar bar("load", "rows", 0, !quiet && has_capable_terminal());
    LoadOptions options;
    options.on_progress = [&](std::uint64_t rows) { bar.show(rows); };
    try {
        return load_model(database, options);
    } catch (const StoreError& error) {
        throw ToolError(ExitCode::model_unreadable, problems_text(database + " cannot be read:", error));
    } catch (const std::bad_alloc&) {
        throw ToolError(ExitCode::model_unreadable, database + " cannot be read: it does not fit into memory");
    }
}

TemporaryFiles watched_temporary_files()
{
    return {create_temporary_file_beside, discard};
}

void create_model_file(const std::string& database, const std::function<void()>& create, const std::string& what)
{
    refuse_stream(database, "MODEL", why_no_stream);
    if (std::filesystem::exists(std::filesystem::symlink_status(database))) {
        throw ToolError(ExitCode::usage, database + " exists and is left as it is; give a name that is not taken");
    }
    try {
        create();
    } catch (const StoreError& error) {
        throw ToolError(ExitCode::failed, problems_text(database + " cannot be created:", error));
    }
    std::cerr << "velm: " << database << ": " << what << '\n';
}

} // namespace velm
