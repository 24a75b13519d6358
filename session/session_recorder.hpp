#pragma once

#include "headless_host/prevelmwdll.h"
#include "session/exchange.hpp"
#include "session/growing_file.hpp"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velm {

/// Writes down what passes between a plug-in and a host, one line of a session file for each exchange, as
/// docs/session-format.md describes. It reads the plug-in's memory and never writes to it.
///
/// A failure to record does not disturb the exchanges: recording stops, and failure() says why.
class SessionRecorder {
public:
    /// Creates the session file. Throws std::system_error when it exists or cannot be created.
    explicit SessionRecorder(const std::filesystem::path& file);
    ~SessionRecorder();
    SessionRecorder(const SessionRecorder&) = delete;
    SessionRecorder& operator=(const SessionRecorder&) = delete;
    SessionRecorder(SessionRecorder&&) = delete;
    SessionRecorder& operator=(SessionRecorder&&) = delete;

    /// Has `answer`, a function without arguments, answer the request and writes the exchange down.
    template <class Answer>
    void record(const velm_host_request& request, Answer answer)
    {
        before_answer(request);
        answer();
        after_answer(request);
    }

    /// Writes the closing line and closes the file; nothing is recorded afterwards.
    void close() noexcept;

    /// Why recording stopped before close; empty when it did not.
    [[nodiscard]] const std::string& failure() const { return failure_; }

private:
    /// The whole of a series is kept from before the answer only when nothing tells how long it is.
    struct SeriesCount {
        std::int32_t key_position = velm_unknown_key; ///< of the key that fetches the series
        std::int32_t system = 0;
        std::int32_t item = 0;
        std::int32_t count = 0;
    };

    void before_answer(const velm_host_request& request) noexcept;
    void after_answer(const velm_host_request& request) noexcept;

    void keep_values(const velm_host_request& request);
    void append_opening(const velm_host_request& request);
    void append_in_values(const velm_host_request& request);
    void append_out_values(const velm_host_request& request);
    void append_in_values_after(const velm_host_request& request);
    void append_series_value(const velm_host_request& request, std::size_t argument);
    void append_text_value(std::string_view before, std::string_view after);
    void remember_count(const velm_host_request& request);
    [[nodiscard]] bool has_known_length(const velm_host_request& request) const;

    std::optional<GrowingFile> file_;
    std::string failure_;
    std::uint64_t exchanges_ = 0;
    std::string line_;
    RecordedValues before_; ///< what the values held before the answer: in-values, texts, series of unknown length
    SeriesCount series_count_;
};

} // namespace velm
