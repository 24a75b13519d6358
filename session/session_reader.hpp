#pragma once

#include "session/exchange.hpp"
#include "session/json_line.hpp"
#include "session/session_error.hpp"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace velm {

/// Reads a session file, one exchange after the other; memory does not grow with its length.
class SessionReader {
public:
    /// Opens `file` and reads its first line. Throws SessionError, and std::system_error when it cannot be read.
    explicit SessionReader(std::filesystem::path file);

    /// The next exchange, which holds until the next call; null at the end. Throws SessionError for a line that is
    /// no sound exchange, and std::system_error.
    [[nodiscard]] const RecordedExchange* next();

    /// After next() has returned null: true when the recorder closed the file, false when the recording breaks off,
    /// as it does when the recorded process was ended from outside or the file was cut.
    [[nodiscard]] bool is_closed() const { return closed_; }
    /// The place behind the last exchange, in words: "river.jsonl, line 57, column 1".
    [[nodiscard]] std::string end_in_words() const;

    [[nodiscard]] const std::filesystem::path& file() const { return file_; }

private:
    [[nodiscard]] bool read_line();
    [[nodiscard]] bool fill_buffer();
    void read_closing_line();
    void refuse_bytes_behind_the_end();

    std::filesystem::path file_;
    std::ifstream input_;
    std::vector<char> buffer_;
    std::size_t buffer_next_ = 0;
    std::size_t buffer_end_ = 0;
    std::string line_; ///< without its line feed
    std::uint64_t line_number_ = 0;
    std::size_t broken_column_ = 0; ///< where the file ends in the middle of a line; 0 when it does not
    bool closed_ = false;
    JsonLine pieces_;
    RecordedExchange exchange_;
};

} // namespace velm
