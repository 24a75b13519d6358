#include "session/growing_file.hpp"

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
void GrowingFile::map_next_block()
{
    unmap_block();
    const int descriptor = static_cast<int>(handle_);
    const auto start = static_cast<off_t>(mapped_end_);
    if (const int reason = posix_fallocate(descriptor, start, block_size); reason != 0) {
        errno = reason;
        fail("cannot write");
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
