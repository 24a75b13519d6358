#pragma once

#include "headless_host/prevelmwdll.h"
#include "host_link/host_keys.hpp"
#include "session/exchange.hpp"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velm {

/// The key of a request in its own call form; null of any other, whose values are unknown.
[[nodiscard]] const HostKey* key_of(const velm_host_request& request);

/// How many lengths of texts came with the request: of an unknown key or form it is not known that there are any.
[[nodiscard]] std::size_t text_count(const velm_host_request& request);

/// What there is to record of each value, in the plug-in's memory: of a text at most longest_recorded_text bytes, of a
/// series all that the plug-in has room for.
using Bytes = std::array<std::string_view, HostKey::most_arguments>;
[[nodiscard]] Bytes bytes_of(const velm_host_request& request);

/// What the values held before the answer, and what is known of it.
struct BeforeAnswer {
    ValueBytes bytes;                          ///< as bytes_of; nothing of a series that is counted
    std::optional<std::int32_t> counted_pairs; ///< of a series, when its count was asked just before
};

/// The line of a session, with its line feed, for a request that has been answered.
[[nodiscard]] std::string exchange_line(std::uint64_t number, const velm_host_request& request,
                                        const BeforeAnswer& before);

} // namespace velm
