#pragma once

#include <stdexcept>
#include <string>

namespace velm {

/// What the tool tells its caller; the help lists the same numbers.
enum class ExitCode {
    done = 0,
    findings = 1,         ///< something was looked for and found
    usage = 2,            ///< the command line, or a file that it names, is not as it must be; nothing was done
    model_unreadable = 3, ///< the model database cannot be read
    failed = 4,           ///< the export failed, or another file or the standard output could not be written
};

/// Ends a command. The text says what is wrong and what to do about it, without the tool's name and without a point.
class ToolError : public std::runtime_error {
public:
    ToolError(ExitCode exit_code, const std::string& text) : std::runtime_error(text), code(exit_code) {}
    ExitCode code;
};

} // namespace velm
