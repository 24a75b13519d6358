#include "tool/plug_in/plug_in_run.hpp"

#include "model/items.hpp"
#include "plain_text/plain_text.hpp"
#include "tool/plug_in/panel_page.hpp"
#include "tool/system/progress_bar.hpp"

#include <cstdint>
#include <exception>

namespace velm {
namespace {

/// A host whose exchanges are written down, if they are.
struct RecordedHost {
    HeadlessHost& host;
    SessionRecorder* recorder;

    static void answer(void* recorded_host, const velm_host_request* request) noexcept
    {
        auto& self = *static_cast<RecordedHost*>(recorded_host);
        self.recorder->record(*request, [&] { HeadlessHost::answer(&self.host, request); });
    }
};

/// What the host will have served at the end, but for a few values of each item: near enough for a bar.
std::uint64_t values_to_serve(const Model& model)
{
    constexpr std::uint64_t of_a_segment = 20;
    const std::uint64_t initial_conditions = 2 * model.systems.size();
    std::uint64_t values = model.segments.size() * (of_a_segment + initial_conditions);
    for_each_item(model, [&](const auto& /*table*/, const RowNumbers& /*numbers*/, const auto& item) {
        if constexpr (requires { item.series; }) {
            values += item.series.times.size();
        } else if constexpr (requires { item.values; }) {
            values += 2 * item.values.size(); // whether one is used, and its value there
        }
    });
    return values;
}

/// Runs the plug-in; returns what it threw in words, empty when it returned.
std::string run_plug_in(const PlugIn& plug_in, const Model& model, HeadlessHost& host, bool quiet,
                        SessionRecorder* recorder)
{
    ProgressBar bar("export", "values", values_to_serve(model), quiet);
    host.on_progress = [&](std::uint64_t values) { bar.show(values); };
    RecordedHost recorded{host, recorder};
    try {
        if (recorder == nullptr) {
            plug_in.run_export(&HeadlessHost::answer, &host);
        } else {
            plug_in.run_export(&RecordedHost::answer, &recorded);
        }
        return {};
    } catch (const std::exception& error) {
        return std::string("the plug-in threw ") + printable(error.what());
    } catch (...) {
        return "the plug-in threw something that has no name";
    }
}

/// Why the export is not to be trusted; empty when host and plug-in agree that it is complete.
std::string failure_seen_by(const HeadlessHost& host)
{
    if (host.requests() == 0) {
        return "the plug-in asked this tool nothing: it is bound to another host library";
    }
    if (host.fault_count() > 0) {
        const auto others = host.fault_count() - 1;
        return host.faults().front() + (others == 0 ? "" : " (and " + std::to_string(others) + " more faults)");
    }
    if (!host.export_completed()) {
        const std::string last = last_panel_message(host.panel());
        return "the plug-in did not announce completion" + (last.empty() ? "" : "; it said last: " + printable(last));
    }
    return {};
}

} // namespace

std::string run_export(const PlugIn& plug_in, const Model& model, HeadlessHost& host, bool quiet,
                       SessionRecorder* recorder)
{
    const std::string thrown = run_plug_in(plug_in, model, host, quiet, recorder);
    return thrown.empty() ? failure_seen_by(host) : thrown;
}

} // namespace velm
