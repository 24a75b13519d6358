#pragma once

#include "headless_host/prevelmwdll.h"
#include "host_link/host_keys.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace velm {

/// What a session line can hold; writers keep to it and readers refuse more.
inline constexpr std::size_t longest_recorded_text = 65'536; ///< bytes of a text that the plug-in sends
inline constexpr std::size_t longest_session_line =
    std::size_t{8} * 1024 * 1024; ///< both series full take 5.2 million bytes
inline constexpr std::int32_t session_version = 1;

/// A value as a session holds it; which member counts is told by the key's argument.
struct RecordedValue {
    std::int32_t integer = 0;
    float real = 0;
    std::string text;
    std::vector<float> series;
};

using RecordedValues = std::array<RecordedValue, HostKey::most_arguments>;

/// One exchange of a session: a known key in its own call form with its own text lengths.
struct RecordedExchange {
    std::uint64_t number = 0; ///< from 1, over all exports of the session
    std::uint64_t line = 0;   ///< of the session file, from 1
    std::int32_t key_position = velm_unknown_key;
    std::array<std::int32_t, 2> text_lengths{};
    RecordedValues values; ///< in: as the plug-in passed it; out: as the host left it
    bool in_values_changed = false;
    RecordedValues in_after; ///< when in_values_changed: the in-values as the host left them

    [[nodiscard]] const HostKey& key() const { return host_keys[key_position]; }
};

} // namespace velm
