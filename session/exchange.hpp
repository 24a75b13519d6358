#pragma once

#include "headless_host/prevelmwdll.h"
#include "host_link/host_keys.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velm {

/// What a session line can hold; writers keep to it and readers refuse more.
inline constexpr std::size_t longest_recorded_text = 65'536; ///< bytes of a text that the plug-in sends
inline constexpr std::size_t longest_session_line =
    std::size_t{8} * 1024 * 1024; ///< both series full take 3.4 million bytes
inline constexpr std::int32_t session_version = 2;

/// The values of a request as they stand in memory.
using ValueBytes = std::array<std::string, HostKey::most_arguments>;

/// The number that stands at a place, counted from 0 in bytes.
template <class Number>
Number number_at(std::string_view bytes, std::size_t place = 0)
{
    Number number{};
    std::memcpy(&number, bytes.data() + place, sizeof number);
    return number;
}

/// One exchange of a session: a known key in its own call form with its own text lengths.
struct RecordedExchange {
    std::uint64_t number = 0; ///< from 1, over all exports of the session
    std::uint64_t line = 0;   ///< of the session file, from 1
    std::int32_t key_position = velm_unknown_key;
    std::array<std::int32_t, 2> text_lengths{};
    ValueBytes values;                  ///< in: as the plug-in passed it; out: as the host left it
    std::optional<ValueBytes> in_after; ///< the in-values as the host left them, when it has changed them

    [[nodiscard]] const HostKey& key() const { return host_keys[key_position]; }
    [[nodiscard]] std::int32_t integer(std::size_t value) const { return number_at<std::int32_t>(values[value]); }
    [[nodiscard]] float real(std::size_t value) const { return number_at<float>(values[value]); }
    [[nodiscard]] std::vector<float> series(std::size_t value) const;
};

/// The request of an exchange, with the exchange's own values in the place of the plug-in's memory. A text that was
/// recorded in part has that part's length.
[[nodiscard]] velm_host_request request_of(RecordedExchange& exchange);

/// The fewest characters that are read as the same real: "1500", "0.1", "1e-45", "-inf", "nan".
[[nodiscard]] std::string real_text(float value);

} // namespace velm
