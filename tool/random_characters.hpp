#pragma once

#include <algorithm>
#include <random>
#include <string>
#include <string_view>

namespace velm {

inline constexpr std::size_t random_character_count = 6;

/// What makes the name of a temporary file new.
[[nodiscard]] inline std::string random_characters()
{
    constexpr std::string_view characters = "abcdefghijklmnopqrstuvwxyz0123456789";
    std::random_device source;
    std::uniform_int_distribution<std::size_t> pick(0, characters.size() - 1);
    std::string result(random_character_count, ' ');
    std::generate(result.begin(), result.end(), [&] { return characters[pick(source)]; });
    return result;
}

} // namespace velm
