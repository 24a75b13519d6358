#pragma once

#include "session/exchange.hpp"
#include "session/session_line.hpp"

namespace velm {

/// Reads a line's exchange into `exchange`, which holds the one before. Throws LineError for everything that no
/// recorder writes: another number than the next, an unknown key, another call form or length than the key has, values
/// of another kind, number or size.
void read_exchange(SessionLine& line, RecordedExchange& exchange);

} // namespace velm
