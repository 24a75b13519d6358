#pragma once

#include "session/session_recorder.hpp"
#include "tool/exit_code.hpp"
#include "tool/files/file_name.hpp"

#include <initializer_list>
#include <memory>
#include <string_view>

namespace velm {

/// A file of the command line.
struct NamedFile {
    std::string_view argument; ///< its name in the help
    const FileName& file;      ///< empty when it was not given
};

/// Throws ToolError (usage) when two of them lead, or would lead, to one file.
void refuse_one_file(std::initializer_list<NamedFile> files);

/// Throws ToolError with `code` for what is not there, or is no regular file: a pipe or a device may have no end.
void refuse_unless_regular(const FileName& file, ExitCode code);

/// Throws FileError when there is a file of this name, or none can be made there.
void refuse_existing_session(const FileName& session);

/// Begins to record in a new file. Throws ToolError (usage) where none may be made, std::system_error for want of room.
[[nodiscard]] std::unique_ptr<SessionRecorder> new_session(const FileName& session);

/// Throws ToolError (usage) for a path of OUTPUT that is too long for the plug-in's field.
void refuse_long_path(const FileName& output);

} // namespace velm
