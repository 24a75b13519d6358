#pragma once

#include "record_output/output_file.hpp"

namespace velm {

/// One export into `file`, which is not open yet: the whole order of an export in one place. Throws ExportFailure,
/// std::bad_alloc and what the host throws; records written before that are in the file.
void export_to(OutputFile& file);

/// The same, and the only place that catches: a failure is told to the panel and to standard error. An export that
/// the host asks for while another is under way is refused in the same way, and the other goes on. A host that ends its
/// thread within a request ends the export with it: the forced unwinding passes through, and nothing else does.
[[gnu::noinline]] void export_and_report(OutputFile& file);

} // namespace velm
