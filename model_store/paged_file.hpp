#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <span>
#include <vector>

namespace velm {

/// A database file that nobody has open, as the pages that it consists of; they are numbered from 1 on.
class PagedFile {
public:
    /// A file of `pages` pages. Throws std::system_error when it cannot be opened.
    PagedFile(const std::filesystem::path& file, std::size_t page_size, std::uint64_t pages);

    [[nodiscard]] std::size_t page_size() const { return page_size_; }
    /// The number of a page that is added at the end. The page that holds byte 2^30 is left out: programs lock the file
    /// there.
    [[nodiscard]] std::uint64_t add_page();
    /// Throws std::system_error when the file cannot be written.
    void write(std::uint64_t number, std::span<const char> page);
    /// Notes in the file's header how many pages there are, and closes the file. Throws std::system_error.
    void close();

private:
    void write_gathered();
    void write_at(std::uint64_t place, std::span<const char> bytes);
    void check() const;

    std::fstream stream_;
    std::size_t page_size_;
    std::uint64_t pages_;
    std::vector<char> gathered_; ///< pages that follow one another
    std::uint64_t first_gathered_ = 0;
};

} // namespace velm
