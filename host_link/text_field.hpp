#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace velm {

/// A text of fixed length, as it travels to and from the host: single-byte characters, no terminator of its own.
template <std::size_t N>
using Text = std::array<char, N>;

/// Sets the first `nuls` characters to NUL and the others to blanks: what a field holds before the host fills it.
template <std::size_t nuls, std::size_t N>
void reset(Text<N>& text)
{
    static_assert(nuls <= N);
    std::fill_n(text.begin(), nuls, '\0');
    std::fill(text.begin() + nuls, text.end(), ' ');
}

/// Cuts trailing blanks, appends one NUL and fills with blanks. NUL is no blank: one that the host has left at the
/// end stays, and stops the cutting. A field without a trailing blank has no room for the NUL and is unchanged.
template <std::size_t N>
void end_with_nul(Text<N>& text)
{
    std::size_t size = N;
    while (size != 0 && text[size - 1] == ' ') {
        --size;
    }
    if (size != N) {
        text[size] = '\0'; // blanks follow already
    }
}

/// `content`, one NUL, and blanks up to the field's length.
template <std::size_t N>
constexpr Text<N> nul_ended(std::string_view content)
{
    Text<N> text{};
    for (std::size_t i = 0; i < N; ++i) {
        text[i] = i < content.size() ? content[i] : i == content.size() ? '\0' : ' ';
    }
    return text;
}

} // namespace velm
