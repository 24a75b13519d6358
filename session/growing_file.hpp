#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>

namespace velm {

/// A new file that is written once from its beginning to its end, and outlives its process: what is written into it is
/// in the file, however the process ends, without a call of the operating system for each piece.
///
/// The file grows in blocks that are mapped into memory. Until it is closed, NUL bytes follow what is written.
class GrowingFile {
public:
    static constexpr std::size_t most_room = std::size_t{1024} * 1024;

    /// Creates `file`. Throws std::system_error when it exists or cannot be created.
    explicit GrowingFile(const std::filesystem::path& file);
    /// Closes; a failure of that leaves NUL bytes at the end.
    ~GrowingFile();
    GrowingFile(const GrowingFile&) = delete;
    GrowingFile& operator=(const GrowingFile&) = delete;
    GrowingFile(GrowingFile&&) = delete;
    GrowingFile& operator=(GrowingFile&&) = delete;

    /// Where the file goes on, with room for `size` bytes, most_room at most. It holds NUL bytes, or what has been
    /// written there before; it stands until room is asked for again. Throws std::system_error when the disk has none.
    [[nodiscard]] char* room(std::size_t size)
    {
        if (size > static_cast<std::size_t>(end_ - next_)) {
            map_next_block();
        }
        return next_;
    }
    /// The file goes on at `end`, within or behind the room that was given.
    void go_on_at(char* end) { next_ = end; }

    /// Cuts off what is behind the place where the file would go on. Nothing can be written afterwards. Throws
    /// std::system_error when that fails.
    void close();

private:
    void map_next_block();
    void forget_block() noexcept;

    // the operating system's part
    void extend(std::uint64_t size);
    [[nodiscard]] char* map(std::uint64_t start, std::size_t size) const;
    static void unmap(char* block, std::size_t size) noexcept;
    void cut_and_close(std::uint64_t size);
    [[noreturn]] void fail(const char* what) const;

    std::filesystem::path file_;
    std::intptr_t handle_ = -1;
    std::uint64_t size_ = 0;        ///< of the file, NUL bytes included
    std::uint64_t block_start_ = 0; ///< where the mapped block begins in the file; without one, where the file goes on
    char* block_ = nullptr;
    char* next_ = nullptr;
    char* end_ = nullptr; ///< of the block, and of the file
};

} // namespace velm
