#pragma once

#include "host_link/host_keys.hpp"

#include <array>
#include <cstdint>
#include <functional>

namespace velm {

/// The call forms in a program of their own, which links the plug-in's objects: as a host library has them, but what
/// the host throws passes through.
struct OwnRequest {
    const HostKey& key;
    std::array<void*, HostKey::most_arguments> values;
    std::array<std::int32_t, 2> text_lengths;

    /// The value of argument `number`, from 0.
    template <class Value>
    [[nodiscard]] Value& value(std::size_t number) const
    {
        return *static_cast<Value*>(values[number]);
    }
};

/// Answers every request of the plug-in's. Requests that break the contract of the call forms end the process.
extern std::function<void(const OwnRequest&)> own_host;

} // namespace velm
