#include "session/growing_file.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace velm {

GrowingFile::GrowingFile(const std::filesystem::path& file)
    : file_(file), handle_(open(file.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666))
{
    if (handle_ < 0) {
        fail("cannot create");
    }
}

/// The disk's room is reserved first: writing to a mapping that the disk has no room for ends the process. Then it is
/// written in large pieces, so that the system has large pages at hand: making one at each first touch takes twice the
/// time.
void GrowingFile::extend(std::uint64_t size)
{
    static constexpr std::array<char, std::size_t{128} * 1024> nuls{};
    const int descriptor = static_cast<int>(handle_);
    const auto position = [](std::uint64_t at) { return static_cast<off_t>(at); };
    if (const int reason = posix_fallocate(descriptor, position(size_), position(size - size_)); reason != 0) {
        errno = reason;
        fail("cannot write");
    }
    std::uint64_t at = std::exchange(size_, size);
    while (at != size) {
        const ssize_t written =
            pwrite(descriptor, nuls.data(), std::min<std::uint64_t>(nuls.size(), size - at), position(at));
        if (written <= 0) {
            break; // no matter: the rest is made when it is touched
        }
        at += static_cast<std::uint64_t>(written);
    }
}

char* GrowingFile::map(std::uint64_t start, std::size_t size) const
{
    void* const mapped =
        mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, static_cast<int>(handle_), static_cast<off_t>(start));
    if (mapped == MAP_FAILED) { // NOLINT(performance-no-int-to-ptr): the system's own constant
        fail("cannot map");
    }
#ifdef MADV_POPULATE_WRITE
    madvise(mapped, size, MADV_POPULATE_WRITE); // all pages at once instead of each when it is touched
#endif
    return static_cast<char*>(mapped);
}

void GrowingFile::unmap(char* block, std::size_t size) noexcept
{
    munmap(block, size);
}

void GrowingFile::cut_and_close(std::uint64_t size)
{
    const int descriptor = static_cast<int>(handle_);
    const bool cut = ftruncate(descriptor, static_cast<off_t>(size)) == 0;
    const int reason = errno;
    const bool closed = ::close(descriptor) == 0;
    handle_ = -1;
    if (!cut || !closed) {
        errno = cut ? errno : reason;
        fail("cannot close");
    }
}

void GrowingFile::fail(const char* what) const
{
    throw std::system_error(errno, std::generic_category(), std::string(what) + ' ' + file_.string());
}

} // namespace velm
