#pragma once

#include "model_diff/model_diff.hpp"

#include <cstddef>
#include <string>

namespace velm {

/// How many numbers of a list changed in one way, and between which times or segments.
struct NumberRange {
    std::size_t count = 0;
    float first = 0;
    float last = 0;
    float largest_change = 0; ///< the new value less the old, of the number that changed most

    /// Six digits: a difference of single-precision numbers has no more to say.
    [[nodiscard]] std::string largest_change_in_words() const;

    [[nodiscard]] static NumberRange of(const NumberChanges& numbers, Change change);
};

} // namespace velm
