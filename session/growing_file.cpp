#include "session/growing_file.hpp"

#include <system_error>

namespace velm {

GrowingFile::~GrowingFile()
{
    try {
        close();
    } catch (const std::system_error&) { // NOLINT(bugprone-empty-catch): the bytes are in the file all the same
    }
}

/// The new block begins with the end of the one before, so that room lies in one piece.
void GrowingFile::map_next_block()
{
    constexpr std::size_t mapping_unit = std::size_t{64} * 1024; // a multiple of every system's
    forget_block();
    const std::uint64_t position = block_start_;
    const std::uint64_t start = position - position % mapping_unit;
    const std::uint64_t size = size_ + most_room;
    extend(size);
    const auto block_size = static_cast<std::size_t>(size - start);
    block_ = map(start, block_size);
    block_start_ = start;
    next_ = block_ + (position - start);
    end_ = block_ + block_size;
}

void GrowingFile::forget_block() noexcept
{
    if (block_ != nullptr) {
        unmap(block_, static_cast<std::size_t>(end_ - block_));
        block_start_ += static_cast<std::uint64_t>(next_ - block_);
        block_ = next_ = end_ = nullptr;
    }
}

void GrowingFile::close()
{
    forget_block();
    if (handle_ != -1) {
        cut_and_close(block_start_);
    }
}

} // namespace velm
