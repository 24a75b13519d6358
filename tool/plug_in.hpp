#pragma once

#include <filesystem>

namespace velm {

/// The export plug-in, loaded as a library as any host loads it. It stays loaded until the process ends.
class PlugIn {
public:
    /// Throws ToolError when there is no such file or it has no procedure importexport.
    explicit PlugIn(const std::filesystem::path& library);

    /// Runs one export. Whatever the plug-in throws comes through.
    void run_export() const { importexport(); }

private:
    void (*importexport)();
};

/// The plug-in that belongs to this tool: beside the executable as it is built, or in the library directory as
/// it is installed. Throws ToolError when neither has it.
[[nodiscard]] std::filesystem::path default_plug_in();

} // namespace velm
