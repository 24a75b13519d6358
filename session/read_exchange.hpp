#pragma once

#include "session/exchange.hpp"
#include "session/json_line.hpp"

namespace velm {

/// Reads the members of an exchange whose object is open, up to the line's end, into `exchange`, which holds the
/// one before. Throws LineError for everything that no recorder writes: another number than the next, an unknown
/// key, another call form or length than the key has, values of another kind, number or size.
void read_exchange(JsonLine& line, RecordedExchange& exchange);

} // namespace velm
