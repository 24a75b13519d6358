#include "water_balance/connections.hpp"

#include "model/items.hpp"

#include <algorithm>

namespace velm {

namespace {

using Connections = std::vector<std::vector<Connection>>;

template <class Ends>
void connect(Connections& connections, const Ends& ends, bool exchange, std::int32_t field)
{
    const auto segments = static_cast<std::int32_t>(connections.size());
    const auto is_known = [&](std::int32_t segment) { return segment >= 0 && segment <= segments; };
    const std::int32_t first = ends.first_segment;
    const std::int32_t second = ends.second_segment;
    if (first == second || !is_known(first) || !is_known(second)) {
        return;
    }
    for (const auto& [from, to] : {std::pair{first, second}, {second, first}}) {
        if (from != 0) {
            connections[static_cast<std::size_t>(from - 1)].push_back({to, exchange, field});
        }
    }
}

} // namespace

std::vector<std::vector<Connection>> connections_of(const Model& model)
{
    Connections connections(model.segments.size());
    for_each_item(model, [&](const auto& table, const RowNumbers& numbers, const auto& item) {
        if constexpr (requires { item.first_segment; }) {
            connect(connections, item, table.name == "exchange_pair", static_cast<std::int32_t>(numbers[0]));
        }
    });
    for (std::vector<Connection>& of_segment : connections) {
        std::sort(of_segment.begin(), of_segment.end());
        of_segment.erase(std::unique(of_segment.begin(), of_segment.end()), of_segment.end());
    }
    return connections;
}

} // namespace velm
