#include "tool/commands/unknown_name.hpp"

#include "plain_text/plain_text.hpp"

#include <algorithm>
#include <numeric>
#include <string_view>
#include <utility>

namespace velm {
namespace {

std::size_t changes_between(std::string_view from, std::string_view to)
{
    std::vector<std::size_t> row(to.size() + 1); // row[j]: changes from the read part of `from` to j characters of `to`
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t changed = diagonal + (from[i] == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

/// The name that takes the fewest characters added, removed or changed to become `mistyped`; empty when even that one
/// is another word: more than half of the characters would change.
std::string nearest_name(std::string_view mistyped, const std::vector<std::string>& names)
{
    std::string nearest;
    std::size_t fewest = mistyped.size(); // a name that shares nothing is no suggestion
    for (const std::string& name : names) {
        const std::size_t changes = changes_between(mistyped, name);
        if (changes < fewest && changes * 2 <= std::max(mistyped.size(), name.size())) {
            nearest = name;
            fewest = changes;
        }
    }
    return nearest;
}

} // namespace

ToolError unknown_name(const std::string& kind, const std::string& mistyped, const std::vector<std::string>& names,
                       const std::string& advice)
{
    const std::string nearest = nearest_name(mistyped, names);
    return {ExitCode::usage, "there is no " + kind + ' ' + printable(mistyped) + "; " +
                                 (nearest.empty() ? "" : "did you mean " + nearest + "? ") + advice};
}

} // namespace velm
