#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace velm {

/// What a session's lines are made of, each appended to `line` as JSON.
void append_integer(std::string& line, std::int64_t value);
/// "1500 44bb8000": the shortest decimals that give the same real, and its bits.
void append_real(std::string& line, float value);
/// Every byte as the character of its number: printable ones as they are, others as \u00NN.
void append_text(std::string& line, std::string_view bytes);
void append_series(std::string& line, std::span<const float> reals);
/// The ranges, counted from 1, in which both texts, of the same size, are the same: [[1,4],[8,30]].
void append_equal_ranges(std::string& line, std::string_view before, std::string_view after);

} // namespace velm
