#include "model_diff/number_ranges.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace velm {

std::string NumberRange::largest_change_in_words() const
{
    std::array<char, 24> text{};
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), largest_change, std::chars_format::general, 6);
    return {text.data(), end.ptr};
}

NumberRange NumberRange::of(const NumberChanges& numbers, Change change)
{
    NumberRange range;
    for (const NumberChange& number : numbers.changes) {
        if (number.change != change) {
            continue;
        }
        range.first = range.count == 0 ? number.at : std::min(range.first, number.at);
        range.last = range.count == 0 ? number.at : std::max(range.last, number.at);
        ++range.count;
        const float difference = number.new_value - number.old_value;
        if (std::abs(difference) > std::abs(range.largest_change)) {
            range.largest_change = difference;
        }
    }
    return range;
}

} // namespace velm
