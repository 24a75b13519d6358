#include "tool/file_arguments.hpp"

#include "tool/exit_code.hpp"

#include <filesystem>
#include <system_error>

namespace velm {

void refuse_same_file(const std::string& one, const std::string& other, const std::string& which)
{
    namespace fs = std::filesystem;
    std::error_code unresolved; // a path that leads nowhere is no other file; its use will say what is wrong
    const fs::path resolved = fs::weakly_canonical(fs::absolute(one), unresolved);
    if (!resolved.empty() && resolved == fs::weakly_canonical(fs::absolute(other), unresolved)) {
        throw ToolError(ExitCode::usage, which + " are the same file, " + one + "; one would replace the other");
    }
}

void refuse_long_path(const std::string& output)
{
    constexpr std::size_t room = 512; // the plug-in's field
    if (output.size() > room) {
        throw ToolError(ExitCode::usage, "the path " + output + " takes " + std::to_string(output.size()) +
                                             " bytes, the plug-in has room for " + std::to_string(room) +
                                             "; run velm in OUTPUT's directory and give the file name alone");
    }
}

void refuse_existing_session(const std::string& session)
{
    if (std::filesystem::exists(std::filesystem::symlink_status(session))) {
        throw ToolError(ExitCode::usage, session + " exists and is left as it is; give a name that is not taken");
    }
}

} // namespace velm
