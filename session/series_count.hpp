#pragma once

#include "headless_host/request.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace velm {

/// How many entries a series has, which the plug-in asks for just before it asks for the series.
class SeriesCount {
public:
    using Indices = std::array<std::int32_t, HostKey::most_arguments>;

    /// Call after each exchange, with the integers that the host has read.
    void remember(const velm_host_request& request, const Indices& read)
    {
        switch (request.key_position) {
        case "GNBFP"_key: key_position_ = "GALLBOUNDFUNC"_key; break;
        case "GNBWK"_key: key_position_ = "GALLLOADFUNC"_key; break;
        default: key_position_ = velm_unknown_key; return;
        }
        system_ = read[0];
        item_ = read[1];
        std::memcpy(&count_, request.values[2], sizeof count_);
    }
    void forget() { key_position_ = velm_unknown_key; }

    [[nodiscard]] bool is_of(const velm_host_request& request, const Indices& read) const
    {
        return key_position_ == request.key_position && system_ == read[0] && item_ == read[1];
    }
    /// As many as are in the plug-in's tables.
    [[nodiscard]] std::size_t entries() const
    {
        return std::min(Request::series_entries, static_cast<std::size_t>(std::max(count_, 0)));
    }

private:
    std::int32_t key_position_ = velm_unknown_key; ///< of the key that fetches the series
    std::int32_t system_ = 0;
    std::int32_t item_ = 0; ///< a boundary or a load of the system
    std::int32_t count_ = 0;
};

} // namespace velm
