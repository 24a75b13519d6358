#pragma once

#include <cstddef>

namespace velm {

/// Characters that put_real needs at most: a quoted "-1.1754944e-38 80800000" takes 25, and its wide stores spill over.
inline constexpr std::size_t real_room = 32;

/// Writes "1500 44bb8000" with its quotes and returns the end: the fewest digits that give the same real, of those the
/// nearest to it, and its bits. From 2^-13 to 2^24 there is no exponent; beyond, there is when that is shorter.
char* put_real(char* to, float value) noexcept;

} // namespace velm
