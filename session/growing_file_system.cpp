#include "session/growing_file.hpp"

#include <array>
#include <cerrno>
#include <string>
#include <system_error>

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

/// The block is reserved on the disk first: writing to a mapping that the disk has no room for ends the process.
/// Then it is written, so that the system has its pages at hand: making one at each first touch takes twice the time.
void GrowingFile::map_next_block()
{
    static constexpr std::array<char, std::size_t{64} * 1024> nuls{};
    unmap_block();
    const int descriptor = static_cast<int>(handle_);
    const auto start = static_cast<off_t>(mapped_end_);
    if (const int reason = posix_fallocate(descriptor, start, block_size); reason != 0) {
        errno = reason;
        fail("cannot write");
    }
    for (std::size_t written = 0; written < block_size; written += nuls.size()) {
        const ssize_t size = pwrite(descriptor, nuls.data(), nuls.size(), start + static_cast<off_t>(written));
        if (size != static_cast<ssize_t>(nuls.size())) {
            break; // no matter: the rest is made when it is touched
        }
    }
    void* const mapped = mmap(nullptr, block_size, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, start);
    if (mapped == MAP_FAILED) { // NOLINT(performance-no-int-to-ptr): the system's own constant
        fail("cannot map");
    }
    block_ = static_cast<char*>(mapped);
    mapped_end_ += block_size;
    used_ = 0;
}

void GrowingFile::unmap_block() noexcept
{
    if (block_ != nullptr) {
        munmap(block_, block_size);
        block_ = nullptr;
    }
}

void GrowingFile::close()
{
    if (handle_ < 0) {
        return;
    }
    const int descriptor = static_cast<int>(handle_);
    const std::uint64_t size = mapped_end_ - (block_size - used_);
    unmap_block();
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
