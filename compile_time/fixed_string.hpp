#pragma once

#include <cstddef>
#include <string_view>

namespace velm {

/// A text that can be a template argument: layouts and host keys are written as literals where they
/// are used, and the compiler reads them.
template <std::size_t N>
struct FixedString {
    char characters[N]{}; ///< the literal's characters, its closing NUL included

    // NOLINTNEXTLINE(google-explicit-constructor): a literal is to convert by itself
    consteval FixedString(const char (&literal)[N])
    {
        for (std::size_t i = 0; i < N; ++i) {
            characters[i] = literal[i];
        }
    }

    /// Number of characters without the closing NUL.
    [[nodiscard]] static constexpr std::size_t size() { return N - 1; }

    [[nodiscard]] constexpr std::string_view view() const { return {characters, N - 1}; }
};

} // namespace velm
