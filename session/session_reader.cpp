#include "session/session_reader.hpp"

#include "headless_host/request.hpp"
#include "plain_text/plain_text.hpp"
#include "session/read_exchange.hpp"
#include "session/session_line.hpp"

#include <cerrno>
#include <system_error>
#include <utility>

namespace velm {
namespace {

void read_version(std::string_view text)
{
    SessionLine line(text);
    const auto& version = line.member("velm_session");
    if (line.integer(version) != session_version) {
        line.refuse("only version " + std::to_string(session_version) + " of sessions is known here, record it again",
                    version);
    }
    line.end();
}

} // namespace

SessionReader::SessionReader(std::filesystem::path file)
    : file_(std::move(file)), input_(file_, std::ios::binary),
      buffer_(std::make_unique_for_overwrite<char[]>(longest_session_line + 1))
{
    if (!input_ || std::filesystem::is_directory(file_)) {
        const int reason = input_ ? EISDIR : errno;
        throw std::system_error(reason, std::generic_category(), "cannot read " + shown(file_));
    }
    if (!read_line()) {
        throw SessionError(place(1) + ": this is no session: it has no complete first line");
    }
    try {
        read_version(line_);
    } catch (const LineError& error) {
        throw SessionError(place(error.column) + ": this is no session: " + error.what());
    }
}

const RecordedExchange* SessionReader::next()
{
    if (closed_ || !read_line()) {
        return nullptr;
    }
    try {
        SessionLine line(line_);
        if (!line.has("end")) {
            read_exchange(line, exchange_);
            exchange_.line = line_number_;
            return &exchange_;
        }
        line.expect_count("end", exchange_.number);
        line.end();
    } catch (const LineError& error) {
        throw SessionError(place(error.column) + ": " + error.what());
    }
    if (read_line() || broken_column_ > 1) {
        throw SessionError(place(1) + ": bytes follow the session's closing line");
    }
    closed_ = true;
    return nullptr;
}

const RecordedExchange* SessionReader::find_export(std::uint64_t export_number)
{
    std::uint64_t exports = 0;
    while (const RecordedExchange* const exchange = next()) {
        if (exchange->key_position == "GFILENAME"_key && ++exports == export_number) {
            return exchange;
        }
    }
    throw SessionError(shown(file_) + " has no export " + std::to_string(export_number) + ", only " +
                       std::to_string(exports));
}

/// True for a whole line; otherwise the file ends.
bool SessionReader::read_line()
{
    ++line_number_;
    input_.getline(buffer_.get(), longest_session_line + 1);
    if (input_.bad()) {
        throw std::system_error(errno, std::generic_category(), "cannot read " + shown(file_));
    }
    const auto size = static_cast<std::size_t>(input_.gcount()); // with the line feed
    if (input_.eof()) {
        broken_column_ = size + 1;
        return false;
    }
    if (input_.fail()) {
        throw SessionError(place(longest_session_line + 1) + ": a line longer than any exchange");
    }
    line_ = {buffer_.get(), size - 1};
    return true;
}

std::string SessionReader::place(std::size_t column) const
{
    return shown(file_) + ", line " + std::to_string(line_number_) + ", column " + std::to_string(column);
}

} // namespace velm
