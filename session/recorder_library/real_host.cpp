#include "session/recorder_library/real_host.hpp"

#include <cstdlib>
#include <stdexcept>
#include <string>

#include <dlfcn.h>

namespace velm {
namespace {

void* symbol(void* library, const std::string& name)
{
    void* const found = dlsym(library, name.c_str());
    if (found == nullptr) {
        throw std::runtime_error(dlerror());
    }
    return found;
}

} // namespace

RealHost load_real_host()
{
    void* const library = dlopen((recorder_directory() / "libprevelmwdll_host.so").c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        throw std::runtime_error(dlerror());
    }
    RealHost host;
    for (std::size_t form = 1; form <= host.exchange.size(); ++form) {
        host.exchange[form - 1] =
            reinterpret_cast<RealHost::Procedure>(symbol(library, "host_exchange_" + std::to_string(form)));
    }
    host.attach = reinterpret_cast<decltype(host.attach)>(dlsym(library, "velm_host_attach"));
    return host;
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
