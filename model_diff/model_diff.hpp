#pragma once

#include "input_file/input_file.hpp"
#include "model/address.hpp"
#include "model/model.hpp"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velm {

enum class Change {
    changed, ///< a value
    numbers, ///< some numbers of a time series, or of a list that has one for each segment
    added,   ///< an item, or a number of a list
    removed,
};
/// "changed", "added" and so forth.
[[nodiscard]] std::string_view name_of(Change change);

/// A number of a list that is not the same on both sides.
struct NumberChange {
    Change change = Change::changed;
    float at = 0; ///< its time or segment
    float old_value = 0;
    float new_value = 0;
};

/// How two lists of numbers differ.
struct NumberChanges {
    bool by_segment = false; ///< otherwise by time
    std::size_t in_both = 0; ///< numbers that both sides have
    std::vector<NumberChange> changes;
};

/// One thing in which two models differ.
struct Difference {
    Section section{};
    Change change = Change::changed;
    std::string item;        ///< in words, UTF-8: "boundary 2 of NITRATE"; empty for the run
    std::string field{};     ///< in words; empty for items and time series
    std::string old_value{}; ///< of a changed value
    std::string new_value{};
    NumberChanges numbers{};
    /// The item's row on both sides; without a table where that side has no such item, and for the run. A series has
    /// the row of its item.
    Address old_place{};
    Address new_place{};
};

struct DiffOptions {
    /// Numbers are the same when they differ by at most this part of the larger one, sign aside.
    double tolerance = 0;
};

/// What was changed to make `new_model` of `old_model`, in the order of an input file's sections; empty when they are
/// the same.
///
/// Systems and functions are known by name, boundaries, loads and paths by their segments, types by ISC number. What
/// has no name of its own, or shares it, and all else, is known by its number: what stands at the same number on both
/// sides is the same item. So an item that is put in between does not make all that follow look changed.
[[nodiscard]] std::vector<Difference> differences(const Model& old_model, const Model& new_model,
                                                  const DiffOptions& options = {});

} // namespace velm
