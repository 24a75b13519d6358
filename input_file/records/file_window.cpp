#include "input_file/records/file_window.hpp"

#include <cstring>
#include <system_error>

namespace velm {
namespace {

constexpr std::size_t block_size = std::size_t{1} << 18U;

} // namespace

FileWindow::FileWindow(std::istream& input)
    : input_(input), block_(new char[longest_record + block_size]), next_(new char[longest_record + block_size])
{
}

std::size_t FileWindow::read_next()
{
    input_.read(next_.get() + longest_record, block_size);
    return static_cast<std::size_t>(input_.gcount());
}

void FileWindow::refill()
{
    const std::size_t read = reading_.valid() ? reading_.get() : read_next();
    if (input_.bad()) {
        throw std::system_error(std::make_error_code(std::errc::io_error));
    }
    const std::size_t left = end_ - at_;
    std::memcpy(next_.get() + longest_record - left, block_.get() + at_, left);
    block_.swap(next_);
    at_ = longest_record - left;
    end_ = longest_record + read;
    ended_ = read < block_size;
    if (!ended_) {
        reading_ = std::async(std::launch::async, [this] { return read_next(); });
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
