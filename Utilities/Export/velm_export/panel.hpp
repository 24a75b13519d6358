#pragma once

#include "host_link/request.hpp"
#include "record_output/output_channel.hpp"

#include <cstddef>

namespace velm {

/// Posts one item of the information panel in bold blue: `closing` is its text and "</span></li>".
template <std::size_t N>
void announce(const char (&closing)[N])
{
    request<"PINFOHTML">(R"(<li><span style="font-weight: bold; color: blue;">)");
    request<"PINFOHTML">(closing);
}

/// The same for a section: the records before it are in the file when the host hears of it.
template <std::size_t N>
void announce(OutputChannel& out, const char (&closing)[N])
{
    out.hand_on();
    announce(closing);
}

} // namespace velm
