#pragma once

#include "record_output/output_channel.hpp"

/// The model input file's sections, in file order. Each asks the host for its data and appends its records. They
/// hand values to one another through velm::model, so the order is not free. They throw ExportFailure.
#pragma GCC visibility push(default)
extern "C" {
void sys_info(velm::OutputChannel& out);
void segment(velm::OutputChannel& out);
void flowpath(velm::OutputChannel& out);
void flows(velm::OutputChannel& out);
void dispexch(velm::OutputChannel& out);
void boundaries(velm::OutputChannel& out);
void loads(velm::OutputChannel& out);
void time_functions(velm::OutputChannel& out);
void parameters(velm::OutputChannel& out);
void constants(velm::OutputChannel& out);
void initial_conditions(velm::OutputChannel& out);

/// Posts the version panel; writes no record.
void intro();

/// One export, from the file name to the completion message. Throws nothing; a failed export says so in the panel
/// and on standard error, and the next one starts afresh.
void importexport();
}
#pragma GCC visibility pop
