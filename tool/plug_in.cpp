#include "tool/plug_in.hpp"

#include "tool/exit_code.hpp"
#include "tool/operating_system.hpp"

#include <string>

namespace velm {
namespace {

namespace fs = std::filesystem;

void (*procedure_of(const fs::path& library))()
{
    if (!fs::is_regular_file(library)) {
        throw ToolError(ExitCode::failed, "there is no plug-in " + library.string() + "; name one with --plugin");
    }
    try {
        return procedure_of_library(library, "importexport");
    } catch (const std::runtime_error& error) {
        throw ToolError(ExitCode::failed, library.string() + " cannot be used as export plug-in: " + error.what());
    }
}

} // namespace

PlugIn::PlugIn(const fs::path& library) : importexport(procedure_of(library)) {}

fs::path default_plug_in()
{
    fs::path built = executable_directory() / VELM_PLUG_IN_NAME;
    if (fs::exists(built)) {
        return built;
    }
    const fs::path installed = executable_directory() / VELM_LIBRARY_DIRECTORY / VELM_PLUG_IN_NAME;
    if (fs::exists(installed)) {
        return installed.lexically_normal();
    }
    throw ToolError(ExitCode::failed, "there is no export plug-in: neither " + built.string() + " nor " +
                                          installed.lexically_normal().string() + "; name one with --plugin");
}

} // namespace velm
