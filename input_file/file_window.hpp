#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <memory>
#include <string_view>

namespace velm {

/// The part of a file that is being read: a window that moves over it in blocks, so that a file of any size takes the
/// same memory.
class FileWindow {
public:
    /// Bytes that ahead() shows at least: more than the longest record and its line end.
    static constexpr std::size_t longest_record = 1024;

    /// `input` is in binary mode and outlives the window.
    explicit FileWindow(std::istream& input);

    /// The bytes from the current place on: at least longest_record of them, fewer only at the end of the file.
    [[nodiscard]] std::string_view ahead()
    {
        if (size_ - at_ < longest_record && !ended_) [[unlikely]] {
            refill();
        }
        return {block_.get() + at_, size_ - at_};
    }

    void skip(std::size_t bytes) { at_ += bytes; }
    /// Moves behind the next line feed, or to the end of the file.
    void skip_line();

    /// Bytes of the file up to the current place.
    [[nodiscard]] std::uint64_t place() const { return before_block_ + at_; }

private:
    void refill();

    std::istream& input_;
    std::unique_ptr<char[]> block_;
    std::size_t size_ = 0;
    std::size_t at_ = 0;
    std::uint64_t before_block_ = 0;
    bool ended_ = false;
};

} // namespace velm
