#pragma once

#include "headless_host/model_answers.hpp"
#include "headless_host/prevelmwdll.h"
#include "model/model.hpp"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace velm {

/// Serves a model to the export plug-in, as the desktop host does: counts, values and series from the model,
/// texts blank-padded to the plug-in's field. Never writes outside a field and never fails: a request that it
/// cannot answer is left unanswered and recorded as a fault.
///
/// Attach it to the host library with velm_host_attach(&HeadlessHost::answer, &host). One host serves one
/// export; panel, progress, requests and faults go on from export to export when it serves more.
class HeadlessHost {
public:
    /// Serves `model`, which must outlive the host and not change, and `output_file_name` (1 to 512 bytes in
    /// the file system's encoding). Throws std::invalid_argument for a name of another length and for one that
    /// cannot travel in a blank-padded field: with a NUL in it, or a blank at its end.
    HeadlessHost(const Model& model, std::string output_file_name);
    HeadlessHost& operator=(HeadlessHost&&) = delete; // neither copied nor moved

    /// The function to attach; `host` is a HeadlessHost.
    static void answer(void* host, const velm_host_request* request) noexcept;

    /// Called whenever 65,536 values or more have been served since the last time, with the number of all: one for
    /// each request, and the time pairs of a series that is fetched whole. Must not throw.
    std::function<void(std::uint64_t values)> on_progress;

    /// What was wrong with requests, in words: the key, its indices, what the model has. At most 100 are
    /// kept; fault_count counts them all.
    [[nodiscard]] const std::vector<std::string>& faults() const { return faults_; }
    [[nodiscard]] std::uint64_t fault_count() const { return fault_count_; }

    /// The HTML of the information panel: all fragments up to their NUL, joined in the order received.
    [[nodiscard]] const std::string& panel() const { return panel_; }
    /// True when the completion message was the last to come.
    [[nodiscard]] bool export_completed() const { return export_completed_; }
    /// The last value sent with PPROGRESS; -1 before any.
    [[nodiscard]] std::int32_t progress() const { return progress_; }
    /// Sound or not, all requests that came.
    [[nodiscard]] std::uint64_t requests() const { return requests_; }

private:
    static constexpr std::uint64_t values_between_progress = 65'536;

    void serve(const Request& request);
    void serve_pair_count(const Request& request);
    void append_to_panel(std::string_view fragment);
    void record_fault(const char* words) noexcept;

    ModelAnswers model_answers_;
    std::string output_file_name_;
    std::vector<std::string> faults_;
    std::string panel_;
    std::uint64_t requests_ = 0;
    std::uint64_t values_ = 0;
    std::uint64_t next_progress_ = values_between_progress;
    std::uint64_t fault_count_ = 0;
    std::int32_t progress_ = -1;
    bool export_completed_ = false;
};

/// True of the panel fragment, up to its NUL or its end, that says that an export has succeeded.
[[nodiscard]] bool is_completion_message(std::string_view fragment);

} // namespace velm
