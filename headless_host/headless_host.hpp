#pragma once

#include "headless_host/prevelmwdll.h"
#include "model/model.hpp"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace velm {

/// Serves a model to the export plug-in, as the desktop host does: counts, values and series from the model,
/// texts blank-padded to the plug-in's field. Never writes outside a field and never fails: a request that it
/// cannot answer is left unanswered and recorded as a fault.
///
/// Attach it to the host library with velm_host_attach(&HeadlessHost::answer, &host).
class HeadlessHost {
public:
    /// Serves `model`, which must outlive the host and not change, and `output_file_name` (1 to 512 bytes in
    /// the file system's encoding). Throws std::invalid_argument for a name of another length.
    HeadlessHost(const Model& model, std::string output_file_name);

    /// The function to attach; `host` is a HeadlessHost.
    static void answer(void* host, const velm_host_request* request) noexcept;

    /// Called after every 65,536 requests with the number of requests so far.
    std::function<void(std::uint64_t requests)> on_progress;

    /// What was wrong with requests, in words: the key, its indices, what the model has. At most 100 are
    /// kept; fault_count counts them all.
    [[nodiscard]] const std::vector<std::string>& faults() const;
    [[nodiscard]] std::uint64_t fault_count() const;

    /// The HTML of the information panel: all fragments up to their NUL, joined in the order received.
    [[nodiscard]] const std::string& panel() const;
    /// True when the completion message was the last to come.
    [[nodiscard]] bool export_completed() const;
    /// The last value sent with PPROGRESS; -1 before any.
    [[nodiscard]] std::int32_t progress() const;
    [[nodiscard]] std::uint64_t requests() const;

    // the implementer adds private members and may improve this interface
};

/// Number of requests that an export of `model` takes, from the version panel to the completion message.
[[nodiscard]] std::uint64_t requests_of_an_export(const Model& model);

} // namespace velm
