#include "session/exchange.hpp"
#include "session/session_reader.hpp"
#include "tests/session/session_file.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

namespace velm {
namespace {

/// One exchange of every kind.
const std::vector<std::string> sound_lines = {
    R"({"velm_session":2})",
    R"({"exchange":1,"key":"PINFOHTML","form":1,"lengths":[10,6],"in":["<li>é\u0000"],"out":[]})",
    R"({"exchange":2,"key":"GIQOPT","form":2,"lengths":[7],"in":[4],"out":[3],"in_after":[9]})",
    R"({"exchange":3,"key":"GSYSNAME","form":3,"lengths":[9,30,5],"in":[1],"out":[)"
    R"({"text":"Salt                          ","unchanged":[[1,2],[5,30]]},{"text":"S\"\\ \u0000","unchanged":[]}]})",
    R"({"exchange":4,"key":"GNOQFUNC","form":5,"lengths":[9],"in":[1,1,7],"out":["-1e-45","nan"]})",
    R"({"exchange":5,"key":"GALLLOADFUNC","form":4,"lengths":[13],"in":[1,2],"out":[["0","0.1"],[]]})",
    R"({"end":5})",
};

std::string joined(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines) {
        text += line + '\n';
    }
    return text;
}

TEST(SessionReader, GivesEachValueAsItWasRecorded)
{
    const SessionFile file(joined(sound_lines));
    SessionReader session(file.path());

    const RecordedExchange* exchange = session.next();
    EXPECT_EQ(exchange->key().name, "PINFOHTML");
    EXPECT_EQ(exchange->values[0], std::string("<li>\xE9\0", 6));
    EXPECT_EQ(exchange->text_lengths[0], 6);

    exchange = session.next();
    EXPECT_EQ(exchange->integer(0), 3);
    EXPECT_EQ(exchange->integer(1), 4);
    EXPECT_EQ(number_at<std::int32_t>(exchange->in_after.value()[1]), 9);

    exchange = session.next();
    EXPECT_EQ(exchange->values[1], "Salt" + std::string(26, ' '));
    EXPECT_EQ(exchange->values[2], std::string("S\"\\ \0", 5));
    EXPECT_FALSE(exchange->in_after);

    exchange = session.next();
    EXPECT_EQ(exchange->number, 4U);
    EXPECT_EQ(exchange->line, 5U);
    EXPECT_EQ(exchange->real(3), -1e-45F);
    EXPECT_NE(exchange->real(4), exchange->real(4)); // not a number

    exchange = session.next();
    EXPECT_EQ(exchange->series(2), (std::vector<float>{0, 0.1F}));
    EXPECT_EQ(exchange->series(3), std::vector<float>{});

    EXPECT_EQ(session.next(), nullptr);
    EXPECT_TRUE(session.is_closed());
}

/// What the document shows is what is read.
TEST(SessionReader, ReadsTheExampleOfTheDocument)
{
    std::ifstream document(VELM_SESSION_FORMAT);
    std::string example;
    bool inside = false;
    for (std::string line; std::getline(document, line);) {
        if (line.starts_with("```")) {
            inside = line == "```json";
        } else if (inside) {
            example += line + '\n';
        }
    }
    EXPECT_EQ(reading(SessionFile(example)), "6 exchanges, closed");
}

/// A sound line in which one piece is replaced, where that is noticed, and what is said about it.
struct Damage {
    std::size_t line; ///< from 1
    std::string piece;
    std::string replacement;
    std::string place; ///< what begins at the column that is named; empty: the line's end
    std::string message;
};

const std::vector<Damage> damages = {
    // no session at all
    {1, R"({"velm_session":2})", "SQLite", "SQLite", "this is no session: not JSON: invalid value"},
    {1, R"({"velm_session":2})", "[2]", "[2]", "this is no session: expected an object, found a list of 1"},
    {1, "session", "song", "", R"(this is no session: there is no member "velm_session")"},
    {1, "2", "1", R"("velm)",
     R"(this is no session: "velm_session": only version 2 of sessions is known here, record it again, found 1)"},
    // no JSON
    {3, "[4]", "[4", ":[3]", "not JSON: missing a comma or ']' after an array element"},
    {2, "é", "\xC3", "\xC3\\", "not JSON: invalid encoding in string"},
    {6, "[]]}", "[]]}~", "~", "not JSON: the document root must not be followed by other values"},
    {3, "[4]", '[' + std::string(1'000'000, '[') + std::string(1'000'000, ']') + ']', R"("in")",
     R"("in": expected an integer of 32 bits, found a list of 1)"},
    // members
    {3, "key", "name", "", R"(there is no member "key")"},
    {3, "in_after", "after", "", "there are 7 members, of which only 6 belong here"},
    {3, R"("in":[4],)", R"("in":[4],"in":[4],)", "", "there are 8 members, of which only 7 belong here"},
    {4, R"({"text":"Sa)", R"({"words":"Sa)", R"("out")",
     R"("out": expected an object with the member "text", found an object)"},
    // wrong types
    {3, "[4]", R"(["4"])", R"("in")", R"("in": expected an integer of 32 bits, found "4")"},
    {3, "[4]", "[4.5]", R"("in")", R"("in": expected an integer of 32 bits, found 4.5)"},
    {3, "[4]", "4", R"("in")", R"("in": expected a list of 1, found 4)"},
    {3, "[4]", "[4,5]", R"("in")", R"("in": expected a list of 1, found a list of 2)"},
    {3, R"("in_after":[9])", R"("in_after":[])", R"("in_after")",
     R"("in_after": expected a list of 1, found a list of 0)"},
    {2, R"("<li>é\u0000")", "null", R"("in")", R"("in": expected a text, found null)"},
    {6, R"("0")", "0", R"("out")", R"("out": expected a single-precision real as a text, such as "1500", found 0)"},
    {6, "[]]", "7]", R"("out")", R"("out": expected a list of at most 100000 reals, found 7)"},
    // what is out of its range
    {3, R"("exchange":2)", R"("exchange":3)", R"("exchange")", R"("exchange": expected 2, found 3)"},
    {3, R"("exchange":2)", R"("exchange":-2)", R"("exchange")", R"("exchange": expected 2, found -2)"},
    {3, "GIQOPT", "GIQOPTS", R"("key")", R"("key": the host's contract has no such key, found "GIQOPTS")"},
    {3, "GIQOPT", "GIQOPT\\u0000", R"("key")", R"("key": the host's contract has no such key, found "GIQOPT\u0000")"},
    {3, R"("form":2)", R"("form":3)", R"("form")", R"("form": expected 2, found 3)"},
    {3, "[7]", "[8]", R"("lengths")", R"("lengths": expected 7, found 8)"},
    {3, "[7]", "[7,2000000000]", R"("lengths")", R"("lengths": expected a list of 1, found a list of 2)"},
    {4, "30,5", "30,2000000000", R"("lengths")", R"("lengths": no length of this text, found 2000000000)"},
    {2, "[10,6]", "[10,2000000000]", R"("in")",
     R"("in": expected a text of 65536 characters, this one has 6, found "<li>\u00E9\u0000")"},
    {2, "[10,6]", "[10,-6]", R"("lengths")", R"("lengths": no length of this text, found -6)"},
    {3, "[4]", "[2147483648]", R"("in")", R"("in": expected an integer of 32 bits, found 2147483648)"},
    {2, "é", "€", R"("in")",
     R"("in": a text has characters up to U+00FF, each for one byte, found "<li>\u20AC\u0000")"},
    {4, "Salt ", "Salt", R"("out")",
     R"("out": expected a text of 30 characters, this one has 29, found "Salt                         ")"},
    {6, "0.1", "0.1f", R"("out")",
     R"("out": expected a single-precision real as a text, such as "1500", found "0.1f")"},
    {5, "-1e-45", "1e39", R"("out")",
     R"("out": expected a single-precision real as a text, such as "1500", found "1e39")"},
    {7, "5", "4", R"("end")", R"("end": expected 5, found 4)"},
};

TEST(SessionReader, NamesThePlaceOfEveryDamage)
{
    for (const Damage& damage : damages) {
        std::vector<std::string> lines = sound_lines;
        std::string& line = lines.at(damage.line - 1);
        ASSERT_NE(line.find(damage.piece), std::string::npos) << damage.piece;
        line.replace(line.find(damage.piece), damage.piece.size(), damage.replacement);
        const std::size_t column = (damage.place.empty() ? line.size() : line.find(damage.place)) + 1;
        ASSERT_NE(column, 0U) << damage.place;
        const std::size_t exchanges = std::max<std::size_t>(damage.line, 2) - 2;
        EXPECT_EQ(reading(SessionFile(joined(lines))), "after " + std::to_string(exchanges) + " exchanges: line " +
                                                           std::to_string(damage.line) + ", column " +
                                                           std::to_string(column) + ": " + damage.message)
            << damage.piece << " -> " << damage.replacement;
    }
}

TEST(SessionReader, RefusesWhatFollowsTheClosingLine)
{
    for (const std::string more : {"{", "\n", "{\"velm_session\":1}\n"}) {
        EXPECT_EQ(reading(SessionFile(joined(sound_lines) + more)),
                  "after 5 exchanges: line 8, column 1: bytes follow the session's closing line");
    }
}

TEST(SessionReader, ReadsACutSessionUpToTheCut)
{
    const std::string whole = joined(sound_lines);
    const std::size_t first_line = sound_lines[0].size() + 1;
    const SessionFile file;
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const std::string cut = whole.substr(0, size);
        const auto complete = static_cast<std::size_t>(std::ranges::count(cut, '\n'));
        const std::size_t column = size - (complete == 0 ? 0 : cut.rfind('\n') + 1) + 1;
        file.write(cut);
        EXPECT_EQ(reading(file),
                  size < first_line
                      ? "after 0 exchanges: line 1, column 1: this is no session: it has no complete first line"
                      : std::to_string(complete - 1) + " exchanges, breaks off at line " +
                            std::to_string(complete + 1) + ", column " + std::to_string(column));
    }
}

TEST(SessionReader, RefusesALineWithoutEnd)
{
    const std::string longest = sound_lines[0] + '\n' + std::string(longest_session_line, ' ');
    EXPECT_EQ(reading(SessionFile(longest + '\n')),
              "after 0 exchanges: line 2, column 8388609: not JSON: the document is empty");
    EXPECT_EQ(reading(SessionFile(longest + " \n")),
              "after 0 exchanges: line 2, column 8388609: a line longer than any exchange");
}

TEST(SessionReader, SaysWhyAFileCannotBeRead)
{
    const SessionFile none;
    EXPECT_THROW(SessionReader{none.path()}, std::system_error);
    EXPECT_THROW(SessionReader{none.path().parent_path()}, std::system_error);
}

} // namespace
} // namespace velm
