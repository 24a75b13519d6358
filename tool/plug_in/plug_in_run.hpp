#pragma once

#include "headless_host/headless_host.hpp"
#include "model/model.hpp"
#include "session/session_recorder.hpp"
#include "tool/plug_in/plug_in.hpp"

#include <string>

namespace velm {

/// Lets the plug-in export `model`, which `host` serves, with progress shown on a terminal unless `quiet`.
/// With a `recorder` every exchange is written down. Returns why the export is not to be trusted; empty when host and
/// plug-in agree that it is complete.
[[nodiscard]] std::string run_export(const PlugIn& plug_in, const Model& model, HeadlessHost& host, bool quiet,
                                     SessionRecorder* recorder = nullptr);

} // namespace velm
