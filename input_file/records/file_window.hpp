#pragma once

#include <cstddef>
#include <cstdint>
#include <future>
#include <istream>
#include <memory>
#include <string_view>

namespace velm {

/// The part of a file that is being read: a window that moves over it in blocks, so that a file of any size takes the
/// same memory. The block after it is being read in the meantime.
class FileWindow {
public:
    /// Bytes that ahead() shows at least: more than the longest record and its line end.
    static constexpr std::size_t longest_record = 1024;

    /// `input` is in binary mode and outlives the window.
    explicit FileWindow(std::istream& input);

    /// The bytes from the current place on: at least longest_record of them, fewer only at the end of the file.
    [[nodiscard]] std::string_view ahead()
    {
        if (end_ - at_ < longest_record && !ended_) [[unlikely]] {
            refill();
        }
        return {block_.get() + at_, end_ - at_};
    }

    void skip(std::size_t bytes)
    {
        at_ += bytes;
        place_ += bytes;
    }
    /// Moves behind the next line feed, or to the end of the file.
    void skip_line();

    /// Bytes of the file up to the current place.
    [[nodiscard]] std::uint64_t place() const { return place_; }

private:
    void refill();
    std::size_t read_next();

    std::istream& input_;
    /// Each begins with room for what is left of the block before.
    std::unique_ptr<char[]> block_;
    std::unique_ptr<char[]> next_;
    std::size_t at_ = 0;
    std::size_t end_ = 0;
    std::uint64_t place_ = 0;
    bool ended_ = false;
    std::future<std::size_t> reading_; ///< of the next block; the last member, for its end waits for that
};

} // namespace velm
