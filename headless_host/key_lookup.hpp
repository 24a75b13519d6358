#pragma once

#include "headless_host/prevelmwdll.h"
#include "host_link/host_keys.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace velm {

/// A perfect hash over host_keys: the compiler tries seeds until every key has a slot of its own, so that a
/// lookup hashes once and compares once.
///
/// 109 keys fall into 2,048 slots without a collision for about one seed in twenty (the chance is the product
/// of 1 - i/2048 for i below 109), so the search is short.
struct KeySlots {
    static constexpr unsigned bits = 11;
    static constexpr std::uint8_t empty = 0xFF;
    static_assert(std::size(host_keys) <= empty);

    std::uint32_t seed = 0;
    std::array<std::uint8_t, std::size_t{1} << bits> positions{}; ///< in host_keys, or `empty`

    [[nodiscard]] constexpr std::size_t slot_of(std::string_view name) const
    {
        constexpr std::uint32_t fnv_prime = 16777619;
        std::uint32_t hash = seed;
        for (const char character : name) {
            hash = (hash ^ static_cast<unsigned char>(character)) * fnv_prime;
        }
        return hash >> (32U - bits);
    }

    /// Gives every key its slot; false at the first key whose slot is taken.
    constexpr bool place_all_keys()
    {
        positions.fill(empty);
        for (std::size_t i = 0; i < std::size(host_keys); ++i) {
            std::uint8_t& position = positions[slot_of(host_keys[i].name)];
            if (position != empty) {
                return false;
            }
            position = static_cast<std::uint8_t>(i);
        }
        return true;
    }
};

consteval KeySlots find_key_slots()
{
    KeySlots slots;
    while (!slots.place_all_keys()) {
        ++slots.seed;
    }
    return slots;
}

inline constexpr KeySlots key_slots = find_key_slots();

inline constexpr std::int32_t longest_key_length =
    std::ranges::max_element(host_keys, {}, [](const HostKey& key) { return key.length(); })->length();

/// The position in host_keys of the key that `length` bytes at `key` spell, its closing NUL counted;
/// velm_unknown_key when they spell none. Reads no byte beyond them.
constexpr std::int32_t find_key(const char* key, std::int32_t length)
{
    if (length < 1 || length > longest_key_length) {
        return velm_unknown_key;
    }
    const std::string_view passed(key, static_cast<std::size_t>(length));
    const std::uint8_t position = key_slots.positions[key_slots.slot_of(passed.substr(0, passed.size() - 1))];
    if (position == KeySlots::empty) {
        return velm_unknown_key;
    }
    // the literal behind a name has a NUL too, which takes part in the comparison
    const std::string_view name = host_keys[position].name;
    const bool is_the_key = passed == std::string_view(name.data(), name.size() + 1);
    return is_the_key ? std::int32_t{position} : std::int32_t{velm_unknown_key};
}

static_assert(std::ranges::all_of(host_keys, [](const HostKey& key) {
    const std::int32_t position = find_key(key.name.data(), key.length());
    return position != velm_unknown_key && &host_keys[position] == &key;
}));

} // namespace velm
