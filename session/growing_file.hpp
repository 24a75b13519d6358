#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string_view>

namespace velm {

/// A new file that is written once from its beginning to its end, and outlives its process: whatever append has
/// returned from is in the file, however the process ends, without a call of the operating system for each piece.
///
/// The file grows in blocks that are mapped into memory. Until it is closed, NUL bytes follow the last piece.
class GrowingFile {
public:
    /// Creates `file`. Throws std::system_error when it exists or cannot be created.
    explicit GrowingFile(const std::filesystem::path& file);
    /// Closes; a failure of that leaves NUL bytes at the end.
    ~GrowingFile();
    GrowingFile(const GrowingFile&) = delete;
    GrowingFile& operator=(const GrowingFile&) = delete;
    GrowingFile(GrowingFile&&) = delete;
    GrowingFile& operator=(GrowingFile&&) = delete;

    /// Throws std::system_error when the disk has no room; the file then ends somewhere in `bytes`.
    void append(std::string_view bytes);

    /// Cuts the NUL bytes off. Nothing can be appended afterwards. Throws std::system_error when that fails.
    void close();

private:
    static constexpr std::size_t block_size = std::size_t{1024} * 1024; ///< a multiple of every system's mapping unit

    void map_next_block();
    void unmap_block() noexcept;
    [[noreturn]] void fail(const char* what) const;

    std::filesystem::path file_;
    std::intptr_t handle_ = -1;
    std::uint64_t mapped_end_ = 0; ///< where in the file the mapped block ends
    char* block_ = nullptr;
    std::size_t used_ = block_size; ///< bytes of the mapped block
};

} // namespace velm
