#include "whole_file/private_folder.hpp"

#include "plain_text/plain_text.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <random>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace velm {
namespace {

/// What the end of the process removes. A signal handler reads it, so it is changed only while signals are held.
struct Remembered {
    int parent = -1; ///< none: a free place
    int folder = -1;
    int content = -1; ///< none yet
    std::array<char, 32> name{};
};
std::array<Remembered, 8> remembered{};

/// Somebody who may write to the parent may have put a folder of his own in the place of the one just made. Permissions
/// prove nothing: where a file system has none, they are not those that were asked for.
bool is_mine(int folder)
{
    struct stat opened {};
    return fstat(folder, &opened) == 0 && opened.st_uid == geteuid();
}

/// Calls nothing but the system, for it may run in a signal handler.
void remove_folder(int parent, const char* name, int folder, int content)
{
    if (content >= 0 && leads_to(folder, "content", content)) {
        unlinkat(folder, "content", 0);
    }
    if (leads_to(parent, name, folder)) {
        unlinkat(parent, name, AT_REMOVEDIR);
    }
}

extern "C" void remove_remembered()
{
    for (Remembered& one : remembered) {
        if (one.parent >= 0) {
            remove_folder(one.parent, one.name.data(), one.folder, one.content);
            one.parent = -1;
        }
    }
}

extern "C" void remove_remembered_and_end(int signal_number)
{
    remove_remembered();
    (void)std::signal(signal_number, SIG_DFL);
    (void)std::raise(signal_number); // comes when the handler returns: the caller sees the signal that ended us
}

void take_endings_once()
{
    static bool taken = false;
    if (std::exchange(taken, true)) {
        return;
    }
    (void)std::atexit(remove_remembered); // a plug-in may call exit
    for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGPIPE, SIGALRM, SIGUSR1, SIGUSR2, SIGXCPU, SIGABRT,
                             SIGSEGV, SIGBUS, SIGFPE, SIGILL}) {
        struct sigaction current {};
        sigaction(number, nullptr, &current);
        if (current.sa_handler == SIG_DFL) { // nohup ignores SIGHUP, sanitizers take SIGSEGV: both stay
            (void)std::signal(number, remove_remembered_and_end);
        }
    }
}

std::string new_name()
{
    std::random_device random;
    return ".velm-" + hexadecimal(random(), 8) + hexadecimal(random(), 8);
}

[[noreturn]] void fail()
{
    throw std::system_error(errno, std::generic_category());
}

} // namespace

bool leads_to(int folder, const char* name, int opened)
{
    struct stat one {};
    struct stat other {};
    return fstatat(folder, name, &one, AT_SYMLINK_NOFOLLOW) == 0 && fstat(opened, &other) == 0 &&
           one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

SignalsHeld::SignalsHeld()
{
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
}

SignalsHeld::~SignalsHeld()
{
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

PrivateFolder::PrivateFolder(int parent) : parent_(parent), name_(new_name()), folder_(-1)
{
    take_endings_once();
    const SignalsHeld held;
    if (mkdirat(parent_, name_.c_str(), S_IRWXU) != 0) {
        fail();
    }
    folder_ = Descriptor(openat(parent_, name_.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!folder_.valid() || !is_mine(folder_.number())) {
        const int reason = folder_.valid() ? EPERM : errno;
        unlinkat(parent_, name_.c_str(), AT_REMOVEDIR); // which removes no folder with a file in it
        errno = reason;
        fail();
    }
    fchmod(folder_.number(), S_IRWXU); // whatever the umask
    auto* const place = std::ranges::find(remembered, -1, &Remembered::parent);
    if (place == remembered.end()) {
        remove_folder(parent_, name_.c_str(), folder_.number(), -1);
        errno = EMFILE;
        fail();
    }
    place->folder = folder_.number();
    name_.copy(place->name.data(), place->name.size() - 1);
    place->parent = parent_;
}

PrivateFolder::~PrivateFolder()
{
    const SignalsHeld held;
    auto* const place = std::ranges::find(remembered, folder_.number(), &Remembered::folder);
    remove_folder(parent_, name_.c_str(), folder_.number(), place->content);
    *place = Remembered{};
}

Descriptor PrivateFolder::make_content(mode_t mode) const
{
    const SignalsHeld held;
    Descriptor file(openat(number(), "content", O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    hold(file.number());
    return file;
}

void PrivateFolder::hold(int content) const
{
    std::ranges::find(remembered, folder_.number(), &Remembered::folder)->content = content;
}

} // namespace velm
