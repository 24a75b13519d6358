#include "input_file/file_window.hpp"

#include <cstring>
#include <system_error>

namespace velm {
namespace {

constexpr std::size_t block_size = std::size_t{1} << 18U;

} // namespace

FileWindow::FileWindow(std::istream& input) : input_(input), block_(new char[block_size]) {}

void FileWindow::refill()
{
    std::memmove(block_.get(), block_.get() + at_, size_ - at_);
    before_block_ += at_;
    size_ -= at_;
    at_ = 0;
    while (size_ < block_size && !ended_) {
        input_.read(block_.get() + size_, static_cast<std::streamsize>(block_size - size_));
        size_ += static_cast<std::size_t>(input_.gcount());
        ended_ = !input_;
    }
    if (input_.bad()) {
        throw std::system_error(std::make_error_code(std::errc::io_error));
    }
}

void FileWindow::skip_line()
{
    for (std::string_view bytes = ahead(); !bytes.empty(); bytes = ahead()) {
        const std::size_t end = bytes.find('\n');
        if (end != std::string_view::npos) {
            return skip(end + 1);
        }
        skip(bytes.size());
    }
}

} // namespace velm
