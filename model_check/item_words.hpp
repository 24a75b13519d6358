#pragma once

#include "model/address.hpp"

#include <cstddef>
#include <string>

namespace velm {

/// "pair 40 of boundary 1 of system 2": the innermost item first, as sentences name it.
[[nodiscard]] inline std::string item_in_words(const Address& address)
{
    const auto words = words_of_key(address.table);
    std::string item;
    for (std::size_t key = 0; key < words.size() && !words.at(key).empty() && address.numbers.at(key) != 0; ++key) {
        const std::string one = std::string(words.at(key)) + ' ' + std::to_string(address.numbers.at(key));
        item = item.empty() ? one : one + " of " + item;
    }
    return item;
}

} // namespace velm
