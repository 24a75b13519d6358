#include "session/session_reader.hpp"

#include "session/read_exchange.hpp"

#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

namespace velm {
namespace {

constexpr std::size_t buffer_size = std::size_t{256} * 1024;

} // namespace

SessionReader::SessionReader(std::filesystem::path file)
    : file_(std::move(file)), input_(file_, std::ios::binary), buffer_(buffer_size)
{
    if (!input_ || std::filesystem::is_directory(file_)) {
        const int reason = input_ ? EISDIR : errno;
        throw std::system_error(reason, std::generic_category(), "cannot read " + file_.string());
    }
    if (!read_line()) {
        throw SessionError(file_, 1, 1, "this is no session: it has no complete first line");
    }
    try {
        pieces_.split(line_);
        pieces_.open_object();
        pieces_.member("velm_session");
        if (const std::int32_t version = pieces_.integer(); version != session_version) {
            pieces_.refuse("version " + std::to_string(version) + " of sessions is not known here, only " +
                           std::to_string(session_version));
        }
        pieces_.close_object();
        pieces_.end();
    } catch (const LineError& error) {
        throw SessionError(file_, 1, error.column, std::string("this is no session: ") + error.what());
    }
}

const RecordedExchange* SessionReader::next()
{
    if (closed_ || !read_line()) {
        return nullptr;
    }
    try {
        pieces_.split(line_);
        pieces_.open_object();
        if (pieces_.is_member("end")) {
            read_closing_line();
            return nullptr;
        }
        read_exchange(pieces_, exchange_);
    } catch (const LineError& error) {
        throw SessionError(file_, line_number_, error.column, error.what());
    }
    exchange_.line = line_number_;
    return &exchange_;
}

void SessionReader::read_closing_line()
{
    pieces_.member("end");
    if (pieces_.count() != exchange_.number) {
        pieces_.refuse("the session has " + std::to_string(exchange_.number) + " exchanges");
    }
    pieces_.close_object();
    pieces_.end();
    if (read_line() || broken_column_ > 1) {
        throw SessionError(file_, line_number_, 1, "bytes follow the session's closing line");
    }
    closed_ = true;
}

std::string SessionReader::end_in_words() const
{
    return file_.string() + ", line " + std::to_string(line_number_) + ", column " + std::to_string(broken_column_);
}

/// True for a whole line; otherwise the file ends, or the unused rest of a recording that was never closed begins.
bool SessionReader::read_line()
{
    line_.clear();
    ++line_number_;
    while (buffer_next_ != buffer_end_ || fill_buffer()) {
        const char* const begin = buffer_.data() + buffer_next_;
        const std::size_t size = buffer_end_ - buffer_next_;
        const auto* const feed = static_cast<const char*>(std::memchr(begin, '\n', size));
        line_.append(begin, feed == nullptr ? begin + size : feed);
        buffer_next_ += feed == nullptr ? size : static_cast<std::size_t>(feed - begin) + 1;
        if (const std::size_t nul = line_.find('\0'); nul != std::string::npos) {
            line_.resize(nul);
            break;
        }
        if (line_.size() > longest_session_line) {
            throw SessionError(file_, line_number_, longest_session_line + 1, "a line longer than any exchange");
        }
        if (feed != nullptr) {
            return true;
        }
    }
    broken_column_ = line_.size() + 1;
    return false;
}

bool SessionReader::fill_buffer()
{
    input_.read(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    if (input_.bad()) {
        throw std::system_error(errno, std::generic_category(), "cannot read " + file_.string());
    }
    buffer_next_ = 0;
    buffer_end_ = static_cast<std::size_t>(input_.gcount());
    return buffer_end_ != 0;
}

} // namespace velm
