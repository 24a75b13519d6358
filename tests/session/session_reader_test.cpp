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
    R"({"velm_session":1})",
    R"({"exchange":1,"key":"PINFOHTML","form":1,"lengths":[10,6],"in":["<li>é\u0000"],"out":[]})",
    R"({"exchange":2,"key":"GIQOPT","form":2,"lengths":[7],"in":[4],"out":[3],"in_after":[9]})",
    R"({"exchange":3,"key":"GSYSNAME","form":3,"lengths":[9,30,5],"in":[1],"out":[)"
    R"({"text":"Salt                          ","unchanged":[[1,2],[5,30]]},{"text":"S\"\\ \u0000","unchanged":[]}]})",
    R"({"exchange":4,"key":"GNOQFUNC","in":[1,1,7],"out":["-1e-45 80000001","nan 7fc00001"]})",
    R"({"exchange":5,"key":"GALLLOADFUNC","form":4,"lengths":[13],"in":[1,2],"out":[["0 00000000","0.1 3dcccccd"],[]]})",
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
    EXPECT_EQ(exchange->values[0].text, std::string("<li>\xE9\0", 6));
    EXPECT_EQ(exchange->text_lengths[0], 6);

    exchange = session.next();
    EXPECT_EQ(exchange->values[0].integer, 3);
    EXPECT_EQ(exchange->values[1].integer, 4);
    EXPECT_TRUE(exchange->in_values_changed);
    EXPECT_EQ(exchange->in_after[1].integer, 9);

    exchange = session.next();
    EXPECT_EQ(exchange->values[1].text, "Salt" + std::string(26, ' '));
    EXPECT_EQ(exchange->values[2].text, std::string("S\"\\ \0", 5));
    EXPECT_FALSE(exchange->in_values_changed);

    exchange = session.next();
    EXPECT_EQ(exchange->number, 4U);
    EXPECT_EQ(exchange->line, 5U);
    EXPECT_EQ(exchange->values[3].real, -1e-45F);
    EXPECT_NE(exchange->values[4].real, exchange->values[4].real); // not a number

    exchange = session.next();
    EXPECT_EQ(exchange->values[2].series, (std::vector<float>{0, 0.1F}));
    EXPECT_EQ(exchange->values[3].series, std::vector<float>{});

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

const std::string no_real = R"(expected a single-precision real and its bits, such as "1500 44bb8000")";
const std::string bad_ranges = "ranges count from 1, ascend and do not touch";
const std::string bad_range_end = "a range ends in the text and not before it begins";
const std::string too_many = "more values, or more within one another, than any exchange has";

const std::vector<Damage> damages = {
    // no session at all
    {1, R"({"velm_session":1})", "SQLite", "SQLite", "this is no session: not JSON: invalid value"},
    {1, "session", "song", R"("velm_song)", R"(this is no session: expected the member "velm_session")"},
    {1, "1", "2", "2", "this is no session: version 2 of sessions is not known here, only 1"},
    // no JSON
    {3, "[4]", "[4", ":[3]", "not JSON: missing a comma or ']' after an array element"},
    {3, R"("GIQOPT")", R"("GIQOPT)", "form", "not JSON: missing a comma or '}' after an object member"},
    {2, "é", "\xC3", "\xC3\\", "not JSON: invalid encoding in string"},
    {2, "u0000", "ud800", "\\ud800", "not JSON: the surrogate pair in string is invalid"},
    {3, "[4]", std::string(100, '['), std::string(95, '[') + ',', too_many},
    {6, "[]]}", "[]]}~", "~", "not JSON: the document root must not be followed by other values"},
    // another member
    {3, "key", "name", R"("name)", R"(expected the member "key")"},
    {3, "in_after", "after", R"("after)", "expected the object's end"},
    {2, R"("form":1,"lengths":[10,6],)", "", R"("in")", R"(expected the member "form")"},
    {3, R"("lengths":[7],)", "", R"("in")", R"(expected the member "lengths")"},
    {3, R"("in":[4],)", "", R"("out)", R"(expected the member "in")"},
    {4, R"(,"unchanged":[]})", "}", "}]}", R"(expected the member "unchanged")"},
    // wrong types
    {3, "[4]", R"(["4"])", R"("4")", "expected an integer"},
    {3, "[4]", "[4.5]", "4.5", "expected an integer"},
    {3, "[4]", "[true]", "true", "expected an integer"},
    {3, "[4]", "[false]", "false", "expected an integer"},
    {3, "[4]", "4", R"(4,"out)", "expected a list"},
    {3, "[4]", "[]", R"(],"out)", "expected an integer"},
    {3, "[4]", "[4,5]", R"(5],"out)", "expected the list's end"},
    {2, R"("<li>é\u0000")", "null", "null", "expected a text"},
    {4, R"({"text")", R"(["text")", R"(:"Salt)", "not JSON: missing a comma or ']' after an array element"},
    {6, R"("0 00000000")", "0", R"(0,"0.1)", "expected a text"},
    // what is out of its range
    {3, R"("exchange":2)", R"("exchange":3)", "3", "the number of this exchange is 2"},
    {3, R"("exchange":2)", R"("exchange":-2)", "-2", "-2 is below 0"},
    {3, "GIQOPT", "GIQOPTS", R"("GIQOPTS)", "the host's contract has no such key"},
    {3, "GIQOPT", "", R"("","form)", "the host's contract has no such key"},
    {3, "GIQOPT", "GIQOPT\\u0000", R"("GIQOPT)", "the host's contract has no such key"},
    {3, R"("form":2)", R"("form":3)", "3", "the call form of this key is 2, not 3"},
    {3, "[7]", "[8]", "8", "the length of this key is 7, not 8"},
    {3, "[7]", "[7,2000000000]", "2000", "expected the list's end"},
    {4, "30,5", "30,2000000000", "2000", "the length of this text is 5, not 2000000000"},
    {2, "[10,6]", "[10,2000000000]", R"("<li>)", "this text has 65536 characters, not 6"},
    {2, "[10,6]", "[10,-6]", "-6", "the length of a text is 0 or more"},
    {3, "[4]", "[2147483648]", "2147483648", "2147483648 is out of the range of 32-bit integers"},
    {3, "[4]", "[-2147483649]", "-2147483649", "-2147483649 is out of the range of 32-bit integers"},
    {3, "[4]", "[99999999999999999999]", "9999", "expected an integer"},
    {2, "é", "€", R"("<li>)", "a text has characters up to U+00FF, each for one byte"},
    {4, "Salt ", "Salt", R"("Salt)", "this text has 30 characters, not 29"},
    {4, "[5,30]", "[3,30]", "3,30", bad_ranges},
    {4, "[1,2]", "[0,2]", "0,2", bad_ranges},
    {4, "[5,30]", "[5,31]", "31", bad_range_end},
    {4, "[5,30]", "[5,4]", "4]", bad_range_end},
    {6, "0.1 3d", "0.2 3d", R"("0.2)", "the real and its bits are two different values"},
    {6, "0.1 3d", "0.1  3d", R"("0.1)", no_real},
    {6, "0.1 3d", "0.1 -d", R"("0.1)", no_real},
    {5, "-1e-45 8", "-1e-99 8", R"("-1e)", no_real},
    {5, "nan 7fc", "nan 000", R"("nan)", "the real and its bits are two different values"},
    {7, "5", "4", "4", "the session has 5 exchanges"},
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
    const auto reading_of = [&](const std::string& content) {
        file.write(content);
        return reading(file);
    };
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const std::string cut = whole.substr(0, size);
        const auto complete = static_cast<std::size_t>(std::ranges::count(cut, '\n'));
        const std::size_t column = size - (complete == 0 ? 0 : cut.rfind('\n') + 1) + 1;
        const std::string expected =
            size < first_line ? "after 0 exchanges: line 1, column 1: this is no session: it has no complete first line"
                              : std::to_string(complete - 1) + " exchanges, breaks off at line " +
                                    std::to_string(complete + 1) + ", column " + std::to_string(column);
        EXPECT_EQ(reading_of(cut), expected);
        // as a recorder leaves it whose process was ended from outside
        EXPECT_EQ(reading_of(cut + std::string(5'000, '\0')), expected);
    }
    EXPECT_EQ(reading_of(whole), "5 exchanges, closed");
    EXPECT_EQ(reading_of(whole + std::string(5'000, '\0')), "5 exchanges, closed");
}

/// Whatever a byte becomes, the session reads as another sound one or names a place in the line of that byte.
TEST(SessionReader, SurvivesEveryByte)
{
    const std::string whole = joined(sound_lines);
    const SessionFile file;
    for (std::size_t i = 0; i < whole.size(); ++i) {
        const auto line = std::count(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(i), '\n') + 1;
        for (const char byte : {'\0', '\n', ' ', '"', '0', '9', '[', '}', '\\', '-', '\xFF'}) {
            std::string spoiled = whole;
            spoiled[i] = byte;
            file.write(spoiled);
            const std::string result = reading(file);
            const std::string place = "line " + std::to_string(line) + ", column ";
            EXPECT_TRUE(result == "5 exchanges, closed" || result.find(place) != std::string::npos ||
                        (whole[i] == '\n' && result.find(", column ") != std::string::npos))
                << "byte " << i << ", " << static_cast<int>(byte) << ": " << result;
        }
    }
}

TEST(SessionReader, RefusesALineWithoutEnd)
{
    const std::string endless = sound_lines[0] + '\n' + std::string(longest_session_line + 1, ' ');
    EXPECT_EQ(reading(SessionFile(endless)),
              "after 0 exchanges: line 2, column 8388609: a line longer than any exchange");
    const std::string opening = R"({"exchange":1,"key":"GALLLOADFUNC","form":4,"lengths":[13],"in":[1,2],"out":[[)";
    const std::string value = R"("0 00000000",)";
    std::string line = opening;
    for (int i = 0; i < 100'001; ++i) {
        line += value;
    }
    EXPECT_EQ(reading(SessionFile(sound_lines[0] + '\n' + line + R"("0 00000000"],[]]})" + '\n')),
              "after 0 exchanges: line 2, column " + std::to_string(opening.size() + 100'000 * value.size() + 1) +
                  ": a series has at most 100000 entries");
}

TEST(SessionReader, SaysWhyAFileCannotBeRead)
{
    const SessionFile none;
    EXPECT_THROW(SessionReader{none.path()}, std::system_error);
    EXPECT_THROW(SessionReader{none.path().parent_path()}, std::system_error);
}

} // namespace
} // namespace velm
