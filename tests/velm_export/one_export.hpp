#pragma once

#include "Utilities/Export/velm_export/sections.hpp"
#include "tests/support/scripted_host.hpp"
#include "tests/support/test_folder.hpp"

#include <cstddef>

namespace velm {

/// One export through the library's entry, with `host` attached while it runs.
inline void run_export(ScriptedHost& host)
{
    velm_host_attach(&ScriptedHost::answer, &host);
    importexport();
    velm_host_attach(nullptr, nullptr);
}

inline constexpr std::size_t version_fragments = 25;

} // namespace velm
