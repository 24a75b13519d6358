#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace velm {

/// An item of one list or the same item of two, by its places.
struct ItemMatch {
    std::optional<std::size_t> old_place;
    std::optional<std::size_t> new_place;
    bool moved = false; ///< stands before an item that it stood after, or after one that it stood before
};

/// Finds the items of one list in another by their names: first those whose name no other item of their list has, then
/// those that are left over at the same place of both lists; with `names_stay`, only when they have the same name. The
/// new list's order, then what was removed. As few items as possible count as moved.
[[nodiscard]] std::vector<ItemMatch> match_items(const std::vector<std::string>& old_names,
                                                 const std::vector<std::string>& new_names, bool names_stay);

} // namespace velm
