#include "session/system.hpp"

#include "plain_text/plain_text.hpp"
#include "session/host_library.hpp"

#include <cerrno>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <system_error>

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velm {

std::FILE* create_new_file(const std::filesystem::path& file)
{
    std::FILE* const opened = std::fopen(file.c_str(), "wxe");
    if (opened == nullptr) {
        throw std::system_error(errno, std::generic_category(), "cannot create " + shown(file));
    }
    return opened;
}

void remove_new_file(std::FILE* opened, const std::filesystem::path& file) noexcept
{
    struct stat made = {};
    struct stat named = {};
    if (fstat(fileno(opened), &made) == 0 && lstat(file.c_str(), &named) == 0 && made.st_dev == named.st_dev &&
        made.st_ino == named.st_ino) { // nobody has put another in its place
        (void)unlink(file.c_str());
    }
    (void)std::fclose(opened);
}

std::filesystem::path own_library()
{
    Dl_info here{};
    if (dladdr(reinterpret_cast<void*>(&own_library), &here) == 0) {
        throw std::runtime_error("the recorder's own place is unknown");
    }
    return std::filesystem::absolute(here.dli_fname);
}

std::filesystem::path session_of_environment()
{
    const char* const name = std::getenv("VELM_SESSION"); // NOLINT(concurrency-mt-unsafe): one thread exports
    return name == nullptr ? "" : name;
}

HostLibrary load_host_library(const std::filesystem::path& file)
{
    void* const library = dlopen(std::filesystem::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        throw std::runtime_error(dlerror());
    }
    HostLibrary host;
    for (std::size_t form = 1; form <= host.exchange.size(); ++form) {
        void* const procedure = dlsym(library, ("host_exchange_" + std::to_string(form)).c_str());
        if (procedure == nullptr) {
            throw std::runtime_error(dlerror());
        }
        host.exchange[form - 1] = reinterpret_cast<HostLibrary::Procedure>(procedure);
    }
    host.attach = reinterpret_cast<decltype(host.attach)>(dlsym(library, "velm_host_attach"));
    return host;
}

} // namespace velm
