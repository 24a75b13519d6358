#pragma once

#include "headless_host/prevelmwdll.h"
#include "tool/exit_code.hpp"

#include <filesystem>

namespace velm {

/// The export plug-in, loaded as a library as any host loads it. It stays loaded until the process ends.
class PlugIn {
public:
    /// Without a name, the plug-in that belongs to this tool: beside the executable as it is built, or in the library
    /// directory as it is installed. Throws ToolError when there is no such file or it has no procedure importexport.
    explicit PlugIn(const std::filesystem::path& library = {});

    /// Runs one export, of which `answer` answers all requests, with `host`. Whatever the plug-in throws comes through.
    /// One that ends the process, or its thread, ends it with ExitCode::failed and words that say so.
    void run_export(velm_host_answer answer, void* host) const;

    /// Ends the process from within an export, without these words.
    [[noreturn]] static void end_process(ExitCode code);

private:
    void (*importexport)();
};

} // namespace velm
