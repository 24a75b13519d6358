#pragma once

#include "headless_host/prevelmwdll.h"
#include "session/session_reader.hpp"

#include <cstdint>
#include <functional>
#include <string>

namespace velm {

/// Serves the answers of a recorded export to a plug-in, in order, as long as it asks what was asked then. Attach it
/// to the host library with velm_host_attach(&Replay::answer, &replay).
///
/// A request is compared by key, call form, lengths and in-values. Two things belong to the replay and not to the
/// recording: the output file name, and the version panel, which differs from build to build (what PINFOHTML posts
/// before the first list item).
class Replay {
public:
    /// Why a replay stopped.
    enum class Outcome : std::uint8_t {
        same,      ///< so far
        departure, ///< the plug-in asked something else than it did then
        damage,    ///< the session cannot be read on
        failure,   ///< the plug-in says that its export failed, which it did not then
    };

    /// Reads `session`, which outlives this, up to the export that is `export_number`, from 1. Throws SessionError.
    Replay(SessionReader& session, std::uint64_t export_number, std::string output_file_name);

    static void answer(void* replay, const velm_host_request* request) noexcept;

    /// Call when the plug-in has returned: what it did not ask any more is a departure too.
    void finish();

    /// Called once when the outcome is no longer `same`, from within the plug-in's request or finish. It may end the
    /// process; when it returns, all further requests stay unanswered.
    std::function<void()> on_stop;
    /// Called after every 65,536 requests with their number so far.
    std::function<void(std::uint64_t requests)> on_progress;

    [[nodiscard]] Outcome outcome() const { return outcome_; }
    /// Why, in words; empty while the outcome is `same`.
    [[nodiscard]] const std::string& reason() const { return reason_; }
    [[nodiscard]] std::uint64_t requests() const { return requests_; }
    /// True when the completion message was the last that the plug-in sent.
    [[nodiscard]] bool export_completed() const { return export_completed_; }
    /// After finish: true when another export follows in the session.
    [[nodiscard]] bool has_more_exports() const { return next_ != nullptr; }

private:
    void serve(const velm_host_request& request);
    void advance() { next_ = session_.next(); }
    [[nodiscard]] bool export_goes_on() const;
    void stop(Outcome outcome, std::string reason) noexcept;
    void depart(const std::string& expected, const std::string& got);

    SessionReader& session_;
    std::string output_file_name_;
    const RecordedExchange* next_;
    Outcome outcome_ = Outcome::same;
    std::string reason_;
    std::uint64_t requests_ = 0;
    bool in_version_panel_ = true;
    bool is_failing_ = false; ///< what the plug-in says next is why
    bool export_completed_ = false;
};

} // namespace velm
