#pragma once

#include "compile_time/fixed_string.hpp"
#include "record_output/output_channel.hpp"

/// Stands in for the records when the plug-in is built to make its requests and do nothing else: the same sections,
/// the same requests in the same order, by the same code. Only what is written is gone.
namespace velm {

template <FixedString text>
inline constexpr int literal = 0;

template <FixedString layout, class... Values>
void write_record(OutputChannel& /*out*/, const Values&... /*values*/)
{
}

template <class... Values>
void write_free_record(OutputChannel& /*out*/, const Values&... /*values*/)
{
}

} // namespace velm
