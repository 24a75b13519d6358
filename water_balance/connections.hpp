#pragma once

#include "model/model.hpp"

#include <compare>
#include <cstdint>
#include <vector>

namespace velm {

/// Something that a segment is connected to by a flow path or an exchange pair.
struct Connection {
    std::int32_t segment = 0; ///< 0: the world outside
    bool exchange = false;    ///< false: a flow path
    std::int32_t field = 0;   ///< of the path or the pair, from 1

    auto operator<=>(const Connection&) const = default;
};

/// For each segment, what it is connected to by paths and pairs of any field, each once and in order. Paths and pairs
/// that name a segment which the model does not have, or lead from a segment to itself, connect nothing.
[[nodiscard]] std::vector<std::vector<Connection>> connections_of(const Model& model);

} // namespace velm
