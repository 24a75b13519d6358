#include "session/recorder_library/surroundings.hpp"

#include <cstdlib>
#include <stdexcept>

#include <dlfcn.h>

namespace velm {

std::filesystem::path real_host_library()
{
    return recorder_directory() / "libprevelmwdll_host.so";
}

std::filesystem::path recorder_directory()
{
    Dl_info here{};
    if (dladdr(reinterpret_cast<void*>(&recorder_directory), &here) == 0) {
        throw std::runtime_error("the recorder's own place is unknown");
    }
    return std::filesystem::absolute(here.dli_fname).parent_path();
}

std::filesystem::path wanted_session_file()
{
    const char* const name = std::getenv("VELM_SESSION"); // NOLINT(concurrency-mt-unsafe): one thread exports
    return name != nullptr && *name != '\0' ? std::filesystem::path(name) : recorder_directory() / "session.jsonl";
}

} // namespace velm
