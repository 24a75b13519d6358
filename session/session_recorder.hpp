#pragma once

#include "headless_host/prevelmwdll.h"
#include "session/exchange.hpp"
#include "session/growing_file.hpp"
#include "session/key_form.hpp"
#include "session/line_beginning.hpp"
#include "session/series_count.hpp"

#include <array>
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

    /// Has `answer`, a function without arguments, answer the request and writes the exchange down. What is asked while
    /// that goes on, by a host that calls itself or the plug-in, is answered only: no replayed plug-in asks it.
    template <class Answer>
    void record(const velm_host_request& request, Answer answer)
    {
        if (is_under_way_) {
            answer();
            return;
        }
        const UnderWay until_the_end(is_under_way_);
        before_answer(request);
        answer();
        after_answer(request);
    }

    /// Writes the closing line and closes the file; nothing is recorded afterwards.
    void close() noexcept;

    /// Why recording stopped before close; empty when it did not.
    [[nodiscard]] const std::string& failure() const { return failure_; }

private:
    using Value = KeyForm::Value;

    /// Ends with the exchange, also when the answer throws.
    struct UnderWay {
        explicit UnderWay(bool& under_way) : under_way_(under_way) { under_way_ = true; }
        ~UnderWay() { under_way_ = false; }
        UnderWay(const UnderWay&) = delete;
        UnderWay& operator=(const UnderWay&) = delete;
        UnderWay(UnderWay&&) = delete;
        UnderWay& operator=(UnderWay&&) = delete;
        bool& under_way_;
    };

    void before_answer(const velm_host_request& request) noexcept;
    void after_answer(const velm_host_request& request) noexcept;
    void append(const std::string& line);
    void stop(const char* reason) noexcept;

    void keep_values(const velm_host_request& request);
    void keep_texts_and_series(const velm_host_request& request);

    // each puts a piece of the line to `at`, where a line of numbers has room, and returns the end of it
    char* put_opening(char* at, const velm_host_request& request) const;
    char* put_read_before(char* at, Value value);
    char* put_read_after(char* at, const velm_host_request& request, Value value);
    char* put_filled(char* at, const velm_host_request& request, Value value);
    char* put_sent_text(char* at, std::string_view text);
    char* put_filled_text(char* at, std::string_view before, std::string_view after);
    char* put_series(char* at, const velm_host_request& request, std::size_t argument);

    /// What is before `at` belongs to the file; behind it there is room for `size` bytes and a line of numbers.
    char* more_room(char* at, std::size_t size);
    [[nodiscard]] bool read_values_have_changed(const velm_host_request& request) const;
    [[nodiscard]] std::string_view text_now(const velm_host_request& request, std::size_t argument) const;

    std::optional<GrowingFile> file_;
    std::string failure_;
    std::uint64_t exchanges_ = 0;
    LineBeginning beginning_;
    SeriesCount series_count_;

    // of the exchange under way, by argument: what stood there before the answer
    bool is_under_way_ = false;
    const KeyForm* form_ = nullptr;
    bool has_own_lengths_ = false; ///< the lengths are those that the key alone tells
    std::array<std::int32_t, HostKey::most_arguments> integers_before_{};   ///< those that the host reads
    std::array<std::string, HostKey::most_arguments> texts_before_;         ///< as much of them as is recorded
    std::array<std::vector<float>, HostKey::most_arguments> series_before_; ///< of unknown length
};

} // namespace velm
