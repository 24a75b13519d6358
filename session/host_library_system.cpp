#include "session/host_library.hpp"

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

HostLibrary load_host_library(const std::filesystem::path& file)
{
    void* const library = dlopen(std::filesystem::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        throw std::runtime_error(dlerror());
    }
    HostLibrary host;
    for (std::size_t form = 1; form <= host.exchange.size(); ++form) {
        host.exchange[form - 1] =
            reinterpret_cast<HostLibrary::Procedure>(symbol(library, "host_exchange_" + std::to_string(form)));
    }
    host.attach = reinterpret_cast<decltype(host.attach)>(dlsym(library, "velm_host_attach"));
    return host;
}

} // namespace velm
