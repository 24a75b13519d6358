#include "model_diff/item_match.hpp"

#include <algorithm>
#include <unordered_map>

namespace velm {

namespace {

/// The places of the names that occur once and say something.
std::unordered_map<std::string, std::size_t> unique_names(const std::vector<std::string>& names)
{
    std::unordered_map<std::string, std::size_t> times;
    for (const std::string& name : names) {
        ++times[name];
    }
    std::unordered_map<std::string, std::size_t> places;
    for (std::size_t place = 0; place < names.size(); ++place) {
        if (!names[place].empty() && times[names[place]] == 1) {
            places.emplace(names[place], place);
        }
    }
    return places;
}

/// Marks as moved all matches outside a longest run of rising old places. ends[n] is the match with the least old place
/// that a rising run of n + 1 matches can end in; before[m] is the match before m in such a run.
void mark_moved(std::vector<ItemMatch>& matches)
{
    std::vector<std::size_t> ends;
    std::vector<std::optional<std::size_t>> before(matches.size());
    for (std::size_t m = 0; m < matches.size(); ++m) {
        if (!matches[m].old_place || !matches[m].new_place) {
            continue;
        }
        matches[m].moved = true;
        const auto end =
            std::lower_bound(ends.begin(), ends.end(), *matches[m].old_place,
                             [&](std::size_t e, std::size_t place) { return *matches[e].old_place < place; });
        if (end != ends.begin()) {
            before[m] = *(end - 1);
        }
        if (end == ends.end()) {
            ends.push_back(m);
        } else {
            *end = m;
        }
    }
    std::optional<std::size_t> last = ends.empty() ? std::nullopt : std::optional(ends.back());
    for (; last; last = before[*last]) {
        matches[*last].moved = false;
    }
}

} // namespace

std::vector<ItemMatch> match_items(const std::vector<std::string>& old_names, const std::vector<std::string>& new_names,
                                   bool names_stay)
{
    std::vector<ItemMatch> matches(new_names.size());
    std::vector<bool> found(old_names.size());
    const auto old_places = unique_names(old_names);
    for (const auto& [name, new_place] : unique_names(new_names)) {
        const auto old_place = old_places.find(name);
        if (old_place != old_places.end()) {
            matches[new_place].old_place = old_place->second;
            found[old_place->second] = true;
        }
    }
    for (std::size_t place = 0; place < new_names.size(); ++place) {
        matches[place].new_place = place;
        if (!matches[place].old_place && place < old_names.size() && !found[place] &&
            (!names_stay || old_names[place] == new_names[place])) {
            matches[place].old_place = place;
            found[place] = true;
        }
    }
    mark_moved(matches);
    for (std::size_t place = 0; place < old_names.size(); ++place) {
        if (!found[place]) {
            matches.push_back({.old_place = place, .new_place = std::nullopt});
        }
    }
    return matches;
}

} // namespace velm
