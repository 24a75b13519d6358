#pragma once

#include "session/exchange.hpp"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>

namespace velm {

/// A session file that is not as it must be. what() is "river.jsonl, line 57, column 12: ...", or says that it has not
/// so many exports.
class SessionError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads a session file, one exchange after the other; memory does not grow with its length.
class SessionReader {
public:
    /// Opens `file` and reads its first line. Throws SessionError, and std::system_error when it cannot be read.
    explicit SessionReader(std::filesystem::path file);

    /// The next exchange, which holds until the next call; null at the end. Throws SessionError for a line that is
    /// no sound exchange, and std::system_error.
    [[nodiscard]] const RecordedExchange* next();

    /// Reads on to the beginning of an export, counted from 1 and from the file's beginning on, and returns its first
    /// exchange, the request for the output file's name. Throws SessionError when there are fewer, and as next().
    [[nodiscard]] const RecordedExchange* find_export(std::uint64_t export_number);

    /// After next() has returned null: true when the recorder closed the file, false when the recording breaks off,
    /// as it does when the recorded process was ended from outside or the file was cut.
    [[nodiscard]] bool is_closed() const { return closed_; }
    /// The place behind the last exchange, in words: "river.jsonl, line 57, column 1".
    [[nodiscard]] std::string end_in_words() const { return place(broken_column_); }

    [[nodiscard]] const std::filesystem::path& file() const { return file_; }

private:
    [[nodiscard]] bool read_line();
    [[nodiscard]] std::string place(std::size_t column) const;

    std::filesystem::path file_;
    std::ifstream input_;
    std::unique_ptr<char[]> buffer_; ///< of the longest line
    std::string_view line_;          ///< in the buffer, without its line feed
    std::uint64_t line_number_ = 0;
    std::size_t broken_column_ = 0; ///< where the file ends in the middle of a line; 0 when it does not
    bool closed_ = false;
    RecordedExchange exchange_;
};

} // namespace velm
