#include "tool/operating_system.hpp"

#include "tool/temporary_name.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velm {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const std::string& what, const fs::path& file)
{
    throw std::system_error(errno, std::generic_category(), what + " " + file.string());
}

struct TemporaryFile {
    std::array<char, PATH_MAX> name{}; ///< absolute; empty: a free place
    int lock = -1;                     ///< says to others that somebody uses the file
};

/// The files to remove when the process ends. A signal handler reads the names, so they are changed only while
/// signals are held.
std::array<TemporaryFile, 4> temporary_files{};

class SignalsHeld {
public:
    SignalsHeld()
    {
        sigset_t all;
        sigfillset(&all);
        sigprocmask(SIG_SETMASK, &all, &before);
    }
    ~SignalsHeld() { sigprocmask(SIG_SETMASK, &before, nullptr); }
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;
    SignalsHeld(SignalsHeld&&) = delete;
    SignalsHeld& operator=(SignalsHeld&&) = delete;

private:
    sigset_t before{};
};

extern "C" void remove_temporary_files()
{
    for (TemporaryFile& file : temporary_files) {
        if (file.name[0] != '\0') {
            unlink(file.name.data());
            file.name[0] = '\0';
        }
    }
}

extern "C" void remove_temporary_files_and_end(int signal_number)
{
    remove_temporary_files();
    (void)std::signal(signal_number, SIG_DFL);
    (void)std::raise(signal_number); // comes when the handler returns: the caller sees the signal that ended us
}

void take_signals_once()
{
    static bool taken = false;
    if (std::exchange(taken, true)) {
        return;
    }
    (void)std::atexit(remove_temporary_files); // a plug-in may call exit
    for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGPIPE, SIGALRM, SIGUSR1, SIGUSR2, SIGXCPU, SIGABRT,
                             SIGSEGV, SIGBUS, SIGFPE, SIGILL}) {
        struct sigaction current {};
        sigaction(number, nullptr, &current);
        if (current.sa_handler == SIG_DFL) { // nohup ignores SIGHUP, sanitizers take SIGSEGV: both stay
            (void)std::signal(number, remove_temporary_files_and_end);
        }
    }
    (void)std::signal(SIGXFSZ, SIG_IGN); // a file that grows too large is a failed write, not the end
}

TemporaryFile* place_of(const std::string& absolute_name)
{
    auto* const found = std::find_if(temporary_files.begin(), temporary_files.end(),
                                     [&](const TemporaryFile& file) { return absolute_name == file.name.data(); });
    return found == temporary_files.end() ? nullptr : &*found;
}

void forget(const fs::path& temporary)
{
    if (auto* place = place_of(fs::absolute(temporary).string())) {
        place->name[0] = '\0';
        close(place->lock);
    }
}

/// False when another process has the file, or has just removed it. Where files cannot be locked it is ours unlocked.
bool take_lock(int descriptor)
{
    const bool taken_by_another = flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    struct stat status {};
    return !taken_by_another && fstat(descriptor, &status) == 0 && status.st_nlink != 0;
}

/// Removes what processes that were killed have left: a lock ends with its process, its file does not. What cannot be
/// looked at or locked stays.
void remove_abandoned(const fs::path& beginning)
{
    for (const fs::path& file : temporary_files_of(beginning)) {
        const int descriptor = open(file.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
        if (descriptor >= 0 && flock(descriptor, LOCK_EX | LOCK_NB) == 0) {
            unlink(file.c_str());
        }
        if (descriptor >= 0) {
            close(descriptor);
        }
    }
}

/// Opens, writes through and closes. A directory that cannot do this is no failure: the rename stands.
void write_through(const fs::path& file, bool required)
{
    const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    const bool written = descriptor >= 0 && fsync(descriptor) == 0;
    const int reason = errno;
    if (descriptor >= 0) {
        close(descriptor);
    }
    if (!written && required) {
        errno = reason;
        fail("cannot write to the disk", file);
    }
}

} // namespace

fs::path executable_directory()
{
    return fs::read_symlink("/proc/self/exe").parent_path();
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

bool may_write(const fs::path& existing_file)
{
    return access(existing_file.c_str(), W_OK) == 0;
}

fs::path create_temporary_file(const fs::path& beginning, bool for_others)
{
    take_signals_once();
    remove_abandoned(beginning);
    for (int attempt = 0; attempt < 100; ++attempt) {
        fs::path file = new_temporary_name(beginning);
        const std::string absolute_name = fs::absolute(file).string();
        const SignalsHeld held;
        const int descriptor = open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, for_others ? 0666 : 0600);
        if (descriptor < 0 && errno == EEXIST) {
            continue;
        }
        if (descriptor < 0) {
            fail("cannot create", file);
        }
        if (!take_lock(descriptor)) { // another run takes the new file for an abandoned one
            close(descriptor);
            continue;
        }
        TemporaryFile* const place = place_of("");
        if (place == nullptr || absolute_name.size() >= place->name.size()) {
            unlink(file.c_str());
            close(descriptor);
            errno = place == nullptr ? EMFILE : ENAMETOOLONG;
            fail("cannot keep track of", file);
        }
        std::copy_n(absolute_name.c_str(), absolute_name.size() + 1, place->name.begin());
        place->lock = descriptor;
        return file;
    }
    fail("cannot create", beginning);
}

void put_in_place(const fs::path& temporary, const fs::path& file)
{
    write_through(temporary, true);
    struct stat before {};
    if (stat(file.c_str(), &before) == 0) {
        // only the superuser may give files away, and may give the group only to members: as far as it goes
        [[maybe_unused]] const int result = chown(temporary.c_str(), before.st_uid, before.st_gid);
        if (chmod(temporary.c_str(), before.st_mode & 07777U) != 0) {
            fail("cannot set the permissions of", temporary);
        }
    }
    {
        const SignalsHeld held;
        if (rename(temporary.c_str(), file.c_str()) != 0) {
            fail("cannot replace", file);
        }
        forget(temporary);
    }
    write_through(file.has_parent_path() ? file.parent_path() : ".", false);
}

void discard(const fs::path& temporary) noexcept
{
    const SignalsHeld held;
    unlink(temporary.c_str());
    try {
        forget(temporary);
    } catch (...) { // out of storage: the file is removed all the same, and once more at the end
    }
}

} // namespace velm
