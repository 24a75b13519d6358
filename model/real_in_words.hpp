#pragma once

#include <array>
#include <charconv>
#include <cmath>
#include <string>

namespace velm {

/// The shortest decimal number that reads back as `value`, with an exponent only where it is very large or small:
/// "0.1", "224000", "1e-40"; "nan" and "inf" for what is no number.
[[nodiscard]] inline std::string real_in_words(float value)
{
    constexpr float least_plain = 1e-4F;
    constexpr float most_plain = 1e9F;
    const float magnitude = std::abs(value);
    const bool plain = magnitude == 0 || (magnitude >= least_plain && magnitude < most_plain);
    std::array<char, 32> text{};
    char* const end = text.data() + text.size();
    const auto written = plain ? std::to_chars(text.data(), end, value, std::chars_format::fixed)
                               : std::to_chars(text.data(), end, value, std::chars_format::scientific);
    return {text.data(), written.ptr};
}

} // namespace velm
