#pragma once

#include <string>

namespace velm {

/// Throws ToolError (usage) when two names lead to one file. `which` are their names in the help.
void refuse_same_file(const std::string& one, const std::string& other, const std::string& which);

/// Throws ToolError (usage) when there is a file of this name.
void refuse_existing_session(const std::string& session);

/// Throws ToolError (usage) for a path of OUTPUT that is too long for the plug-in's field.
void refuse_long_path(const std::string& output);

} // namespace velm
