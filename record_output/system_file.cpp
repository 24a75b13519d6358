#include "record_output/output_file.hpp"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <initializer_list>
#include <pthread.h>
#include <unistd.h>

namespace velm {
namespace {

/// Keeps SIGPIPE and SIGXFSZ from the thread while it writes, and takes back one that a write has raised. A
/// signal that was already pending stays so. Nor is the thread cancelled in the meantime.
class Undisturbed {
public:
    Undisturbed() noexcept
    {
        sigemptyset(&held_);
        sigaddset(&held_, SIGPIPE);
        sigaddset(&held_, SIGXFSZ);
        sigset_t pending;
        sigemptyset(&pending);
        sigpending(&pending);
        for (const int signal : {SIGPIPE, SIGXFSZ}) {
            if (sigismember(&pending, signal) == 1) {
                sigdelset(&held_, signal);
            }
        }
        pthread_sigmask(SIG_BLOCK, &held_, &before_);
        pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &cancel_state_before_);
    }
    ~Undisturbed()
    {
        const timespec at_once{};
        while (sigtimedwait(&held_, nullptr, &at_once) > 0) {
        }
        pthread_setcancelstate(cancel_state_before_, nullptr);
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    Undisturbed(const Undisturbed&) = delete;
    Undisturbed& operator=(const Undisturbed&) = delete;
    Undisturbed(Undisturbed&&) = delete;
    Undisturbed& operator=(Undisturbed&&) = delete;

private:
    sigset_t held_{};
    sigset_t before_{};
    int cancel_state_before_ = 0;
};

/// Returns 0 or the error number.
int write_all(int descriptor, const char* bytes, std::size_t size) noexcept
{
    const Undisturbed undisturbed;
    while (size != 0) {
        const ssize_t written = ::write(descriptor, bytes, size);
        if (written > 0) {
            bytes += written;
            size -= static_cast<std::size_t>(written);
        } else if (written == 0) {
            return EIO; // a device that takes nothing would be asked for ever
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

[[noreturn]] void fail(const char* operation, int error)
{
    // the message in the language of the C locale, whatever the host has set
    const char* message = strerrordesc_np(error);
    throw ExportFailure(operation, message != nullptr ? message : "unknown error");
}

int descriptor_of(std::intptr_t handle)
{
    return static_cast<int>(handle);
}

} // namespace

void SystemFile::let_go() noexcept
{
    if (handle_ != none) {
        const Undisturbed undisturbed;
        ::close(descriptor_of(handle_));
        handle_ = none;
    }
}

void SystemFile::open(const char* path)
{
    do {
        handle_ = ::open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    } while (handle_ == none && errno == EINTR);
    if (handle_ == none) {
        fail("OPEN", errno);
    }
}

void SystemFile::write(const char* bytes, std::size_t size)
{
    if (const int error = write_all(descriptor_of(handle_), bytes, size); error != 0) {
        fail("WRITE", error);
    }
}

void SystemFile::close()
{
    const int descriptor = descriptor_of(handle_);
    handle_ = none;
    // after EINTR the descriptor is gone on this system, and the data are with it
    if (::close(descriptor) != 0 && errno != EINTR) {
        fail("CLOSE", errno);
    }
}

void write_to_standard_error(const char* text) noexcept
{
    write_all(STDERR_FILENO, text, std::strlen(text));
}

} // namespace velm
