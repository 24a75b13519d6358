#include "tool/files/file_arguments.hpp"

#include "whole_file/place.hpp"

#include <filesystem>
#include <system_error>

namespace velm {

void refuse_one_file(std::initializer_list<NamedFile> files)
{
    for (const auto* one = files.begin(); one != files.end(); ++one) {
        for (const auto* other = files.begin(); other != one; ++other) {
            if (!one->file.empty() && !other->file.empty() && lead_to_one_file(one->file, other->file)) {
                throw ToolError(ExitCode::usage, std::string(other->argument) + " and " + std::string(one->argument) +
                                                     " are the same file, " + other->file +
                                                     "; one would replace the other");
            }
        }
    }
}

namespace {

/// The first of the folders of `file` that does not exist, in words; `file` where all of them do.
std::string missing_part_of(const FileName& file)
{
    std::filesystem::path folder;
    for (const std::filesystem::path& part : std::filesystem::path(file).parent_path()) {
        folder /= part;
        if (std::error_code error; !std::filesystem::exists(folder, error)) {
            return "the folder " + shown(folder) + " of " + file;
        }
    }
    return file.in_words();
}

} // namespace

void refuse_unless_regular(const FileName& file, ExitCode code)
{
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(file, error);
    if (status.type() == std::filesystem::file_type::not_found) {
        throw ToolError(code, missing_part_of(file) + " does not exist; give another name");
    }
    if (error) {
        throw ToolError(code, file + " cannot be opened: " + error.message() + "; give another name");
    }
    if (!std::filesystem::is_regular_file(status)) {
        throw ToolError(code, file + " is a folder, a device or a pipe; give a file, which can be read to its end "
                                     "and more than once");
    }
}

void refuse_long_path(const FileName& output)
{
    constexpr std::size_t room = 512; // the plug-in's field
    if (output.text().size() > room) {
        throw ToolError(ExitCode::usage, "the path " + output + " takes " + std::to_string(output.text().size()) +
                                             " bytes, the plug-in has room for " + std::to_string(room) +
                                             "; run velm in OUTPUT's directory and give the file name alone");
    }
}

void refuse_existing_session(const FileName& session)
{
    refuse_unless_free(session, real_place(session), Standing::refused);
}

std::unique_ptr<SessionRecorder> new_session(const FileName& session)
{
    try {
        return std::make_unique<SessionRecorder>(session);
    } catch (const std::system_error& error) {
        if (error.code() == std::errc::permission_denied || error.code() == std::errc::read_only_file_system) {
            throw ToolError(ExitCode::usage,
                            std::string(error.what()) + "; name a file in a folder that may be written to");
        }
        throw;
    }
}

} // namespace velm
