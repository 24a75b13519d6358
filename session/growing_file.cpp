#include "session/growing_file.hpp"

#include <algorithm>
#include <cstring>
#include <system_error>

namespace velm {

GrowingFile::~GrowingFile()
{
    try {
        close();
    } catch (const std::system_error&) { // NOLINT(bugprone-empty-catch): the bytes are in the file all the same
    }
}

void GrowingFile::append(std::string_view bytes)
{
    while (!bytes.empty()) {
        if (used_ == block_size) {
            map_next_block();
        }
        const std::size_t size = std::min(bytes.size(), block_size - used_);
        std::memcpy(block_ + used_, bytes.data(), size);
        used_ += size;
        bytes.remove_prefix(size);
    }
}

} // namespace velm
