#include "tool/system/operating_system.hpp"

#include <array>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

#include <dlfcn.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace velm {

namespace fs = std::filesystem;

fs::path executable_directory()
{
    return fs::read_symlink("/proc/self/exe").parent_path();
}

void prepare_streams()
{
    (void)std::signal(SIGXFSZ, SIG_IGN);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) < 0) { // the first number that is free
            (void)open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

bool has_capable_terminal()
{
    const char* const kind = std::getenv("TERM"); // NOLINT(concurrency-mt-unsafe): nothing changes it
    return isatty(STDERR_FILENO) == 1 && kind != nullptr && *kind != '\0' && kind != std::string_view("dumb");
}

std::size_t terminal_columns()
{
    winsize size{};
    const bool known = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : 80;
}

void (*procedure_of_library(const fs::path& library, const char* name))()
{
    void* const handle = dlopen(fs::absolute(library).c_str(), RTLD_NOW | RTLD_LOCAL);
    void* const procedure = handle == nullptr ? nullptr : dlsym(handle, name);
    if (procedure == nullptr) {
        throw std::runtime_error(dlerror());
    }
    return reinterpret_cast<void (*)()>(procedure);
}

void open_in_browser(const fs::path& page)
{
    const std::string name = fs::absolute(page).string();
    std::string opener = "xdg-open";
    std::string argument = name;
    std::array<char*, 3> arguments{opener.data(), argument.data(), nullptr};
    pid_t process = 0;
    const int failure = posix_spawnp(&process, opener.c_str(), nullptr, nullptr, arguments.data(), environ);
    if (failure != 0) {
        throw std::runtime_error("no browser can be started (xdg-open: " + std::generic_category().message(failure) +
                                 "); open " + name + " yourself");
    }
}

} // namespace velm
