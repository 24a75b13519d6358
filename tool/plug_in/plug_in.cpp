#include "tool/plug_in/plug_in.hpp"

#include "plain_text/plain_text.hpp"
#include "tool/exit_code.hpp"
#include "tool/system/operating_system.hpp"
#include "tool/system/terminal.hpp"

#include <cstdlib>
#include <system_error>

#ifndef _WIN32
#include <cxxabi.h>
#endif

namespace velm {
namespace {

namespace fs = std::filesystem;

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
    throw ToolError(ExitCode::failed, "there is no export plug-in: neither " + shown(built) + " nor " +
                                          shown(installed.lexically_normal()) + "; name one with --plugin");
}

void (*procedure_of(const fs::path& library))()
{
    if (std::error_code unknown; !fs::is_regular_file(library, unknown)) {
        throw ToolError(ExitCode::failed, "there is no plug-in " + shown(library) + "; name one with --plugin");
    }
    try {
        return procedure_of_library(library, "importexport");
    } catch (const std::runtime_error& error) {
        throw ToolError(ExitCode::failed,
                        shown(library) + " cannot be used as export plug-in: " + printable(error.what()));
    }
}

bool is_under_way = false;

/// The end of a process that a plug-in has called for, after all else that is done then.
extern "C" void fail_if_under_way()
{
    if (is_under_way) {
        print_error("the plug-in ended the process before its export was over; nothing was written");
        std::_Exit(static_cast<int>(ExitCode::failed));
    }
}

// registered before main begins, and so called after all else
const bool is_watched = std::atexit(fail_if_under_way) == 0
#ifndef _WIN32
                        && std::at_quick_exit(fail_if_under_way) == 0
#endif
    ;

} // namespace

void PlugIn::run_export(velm_host_answer answer, void* host) const
{
    velm_host_attach(answer, host);
    is_under_way = is_watched;
    const auto end = [] {
        is_under_way = false;
        velm_host_attach(nullptr, nullptr);
    };
    try {
        importexport();
#ifndef _WIN32
    } catch (const abi::__forced_unwind&) {            // a thread that ends cannot be kept from that
        std::exit(static_cast<int>(ExitCode::failed)); // NOLINT(concurrency-mt-unsafe): one thread exports
#endif
    } catch (...) {
        end();
        throw;
    }
    end();
}

void PlugIn::end_process(ExitCode code)
{
    is_under_way = false;
    std::exit(static_cast<int>(code)); // NOLINT(concurrency-mt-unsafe): one thread exports
}

PlugIn::PlugIn(const fs::path& library) : importexport(procedure_of(library.empty() ? default_plug_in() : library)) {}

} // namespace velm
