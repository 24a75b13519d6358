#pragma once

#include "host_link/request.hpp"

#include <cstddef>

namespace velm {

/// Posts one item of the information panel in bold blue: `closing` is its text and "</span></li>".
template <std::size_t N>
void announce(const char (&closing)[N])
{
    request<"PINFOHTML">(R"(<li><span style="font-weight: bold; color: blue;">)");
    request<"PINFOHTML">(closing);
}

} // namespace velm
