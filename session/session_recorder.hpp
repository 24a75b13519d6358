#pragma once

#include "headless_host/prevelmwdll.h"
#include "session/exchange_line.hpp"

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

namespace velm {

/// Writes down what passes between a plug-in and a host, one line of a session file for each exchange, as
/// docs/session-format.md describes. It reads the plug-in's memory and never writes to it. An exchange is in the file
/// as soon as it is over, however the process ends.
///
/// A failure to record does not disturb the exchanges: recording stops, and failure() says why.
class SessionRecorder {
public:
    /// Creates the session file. Throws std::system_error when it exists or cannot be created and written; then no
    /// new file is left.
    explicit SessionRecorder(const std::filesystem::path& file);
    ~SessionRecorder();
    SessionRecorder& operator=(SessionRecorder&&) = delete; // neither copied nor moved

    /// Has `answer`, a function without arguments, answer the request and writes the exchange down. What is asked while
    /// that goes on, by a host that calls itself or the plug-in, is answered only: no replayed plug-in asks it. An
    /// exchange whose answer throws is not written down.
    template <class Answer>
    void record(const velm_host_request& request, Answer answer)
    {
        if (is_under_way_) {
            answer();
            return;
        }
        is_under_way_ = true;
        before_answer(request);
        try {
            answer();
        } catch (...) {
            is_under_way_ = false;
            throw;
        }
        after_answer(request);
        is_under_way_ = false;
    }

    /// Writes the closing line and closes the file; nothing is recorded afterwards.
    void close() noexcept;

    /// Removes the file if recording has stopped before close.
    void remove_if_failed() noexcept;

    /// Why recording stopped before close; empty when it did not.
    [[nodiscard]] const std::string& failure() const { return failure_; }

private:
    void before_answer(const velm_host_request& request) noexcept;
    void after_answer(const velm_host_request& request) noexcept;
    [[nodiscard]] bool is_written(const std::string& line) const;
    void write(const std::string& line) const;
    /// Does the work; when that fails, recording stops.
    template <class Work>
    void attempt(Work work) noexcept;

    std::filesystem::path name_;
    std::FILE* file_; ///< null when it is closed
    std::string failure_;
    std::uint64_t exchanges_ = 0;
    BeforeAnswer before_; ///< of the exchange under way
    bool is_under_way_ = false;
};

} // namespace velm
