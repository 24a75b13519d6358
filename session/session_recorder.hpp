#pragma once

#include "headless_host/prevelmwdll.h"
#include "session/exchange.hpp"
#include "session/growing_file.hpp"
#include "session/line_writer.hpp"

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

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
    /// A value of the request under way.
    struct Value {
        Kind kind{};
        Direction direction{};
        const void* address = nullptr;
        std::size_t text_size = 0; ///< bytes of a text that are recorded
    };
    /// How many entries the next series has, which the plug-in asks for just before it.
    struct SeriesCount {
        std::int32_t key_position = velm_unknown_key; ///< of the key that fetches the series
        std::int32_t system = 0;
        std::int32_t item = 0;
        std::int32_t count = 0;
    };

    void before_answer(const velm_host_request& request) noexcept;
    void after_answer(const velm_host_request& request) noexcept;
    void stop(const char* reason) noexcept;

    void keep_values(const velm_host_request& request);
    void put_opening(const velm_host_request& request);
    template <class PutValue>
    void put_list(std::string_view member, Direction direction, PutValue put_value);
    void put_in_value_before(std::size_t value);
    void put_in_value_after(std::size_t value);
    void put_out_value(const velm_host_request& request, std::size_t value);
    [[nodiscard]] bool in_values_have_changed() const;
    void put_series(const velm_host_request& request, std::size_t value);
    void put_reals(std::span<const float> reals);
    [[nodiscard]] bool knows_length_of_series(const velm_host_request& request) const;
    void remember_count(const velm_host_request& request);
    [[nodiscard]] std::span<const Value> values() const { return {values_.data(), value_count_}; }

    std::optional<GrowingFile> file_;
    std::string failure_;
    std::uint64_t exchanges_ = 0;
    LineWriter line_;
    std::array<Value, HostKey::most_arguments> values_{};
    std::size_t value_count_ = 0; ///< 0 when the key does not tell what the values are
    RecordedValues before_;       ///< in-values, texts, and series of unknown length as they were before the answer
    SeriesCount series_count_;
};

} // namespace velm
