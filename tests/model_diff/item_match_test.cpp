#include "model_diff/item_match.hpp"

#include <sstream>
#include <utility>

#include <gtest/gtest.h>

namespace velm {
namespace {

/// A letter is the name of an item. "1>2" is a match, its places from 1; "!" follows what moved, "+" and "-" stand for
/// items that came and went.
std::string matched(const std::string& before, const std::string& after, bool names_stay)
{
    const auto names = [](const std::string& letters) {
        std::vector<std::string> list;
        for (const char letter : letters) {
            list.emplace_back(letter == '_' ? "" : std::string(1, letter));
        }
        return list;
    };
    std::ostringstream words;
    const char* blank = "";
    for (const ItemMatch& match : match_items(names(before), names(after), names_stay)) {
        words << std::exchange(blank, " ");
        if (!match.old_place) {
            words << '+' << *match.new_place + 1;
        } else if (!match.new_place) {
            words << '-' << *match.old_place + 1;
        } else {
            words << *match.old_place + 1 << '>' << *match.new_place + 1 << (match.moved ? "!" : "");
        }
    }
    return words.str();
}

TEST(ItemMatch, Table)
{
    struct Case {
        const char* before;
        const char* after;
        const char* matches;
        const char* when_names_stay;
    };
    const Case cases[] = {
        {"", "", "", ""},
        {"abc", "abc", "1>1 2>2 3>3", "1>1 2>2 3>3"},
        {"abc", "axbc", "1>1 +2 2>3 3>4", "1>1 +2 2>3 3>4"},
        {"abc", "bc", "2>1 3>2 -1", "2>1 3>2 -1"},
        {"abc", "axc", "1>1 2>2 3>3", "1>1 +2 3>3 -2"},
        {"abcd", "dabc", "4>1! 1>2 2>3 3>4", "4>1! 1>2 2>3 3>4"},
        {"abcd", "badc", "2>1! 1>2 4>3! 3>4", "2>1! 1>2 4>3! 3>4"},
        {"aab", "aab", "1>1 2>2 3>3", "1>1 2>2 3>3"}, // names that others share say nothing
        {"aab", "ab", "1>1 3>2 -2", "1>1 3>2 -2"},
        {"__", "___", "1>1 2>2 +3", "1>1 2>2 +3"},
    };
    for (const Case& one : cases) {
        EXPECT_EQ(matched(one.before, one.after, false), one.matches) << one.before << ' ' << one.after;
        EXPECT_EQ(matched(one.before, one.after, true), one.when_names_stay) << one.before << ' ' << one.after;
    }
}

} // namespace
} // namespace velm
