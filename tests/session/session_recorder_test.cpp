#include "headless_host/key_lookup.hpp"
#include "headless_host/request.hpp"
#include "session/exchange.hpp"
#include "session/session_reader.hpp"
#include "session/session_recorder.hpp"
#include "tests/session/session_file.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace velm {
namespace {

/// The plug-in's memory: what it holds before a request, and what the host makes of it.
struct Memory {
    std::int32_t integers[3] = {1, 2, 0};
    float real = 0;
    std::string text = std::string(30, 'x');
    std::string tag = std::string(5, ' ');
    std::vector<float> series = std::vector<float>(Request::series_entries, 7);
    std::vector<float> other_series = std::vector<float>(Request::series_entries, 8);
};

void record(SessionRecorder& recorder, std::string key, const std::vector<void*>& values,
            const std::vector<std::int32_t>& text_lengths, const std::function<void()>& answer)
{
    key += '\0';
    const auto length = static_cast<std::int32_t>(key.size());
    const auto form = static_cast<std::int32_t>(values.size());
    velm_host_request request{key.data(), length, find_key(key.data(), length), form, {}, {}};
    std::ranges::copy(values, request.values);
    std::ranges::copy(text_lengths, request.text_lengths);
    recorder.record(request, answer);
}

std::vector<std::string> lines_of(const SessionFile& file)
{
    std::vector<std::string> lines;
    const std::string content = file.content();
    for (std::size_t begin = 0, end = 0; end != content.size(); begin = end) {
        end = content.find('\n', begin) + 1;
        lines.push_back(content.substr(begin, end - begin - 1));
    }
    return lines;
}

struct Case {
    const char* what;
    std::function<void(SessionRecorder&, Memory&)> exchange;
    std::string members; ///< of the line behind its number
};

Case real_case(float value, const std::string& expected)
{
    return {"a real",
            [value](SessionRecorder& recorder, Memory& m) {
                record(recorder, "GVOLUME", {&m.integers[0], &m.real}, {}, [&] { m.real = value; });
            },
            R"("key":"GVOLUME","form":2,"lengths":[8],"in":[1],"out":[")" + expected + R"("]})"};
}

const std::vector<Case> cases = {
    {"an integer before its index",
     [](SessionRecorder& recorder, Memory& m) {
         record(recorder, "GIQOPT", {&m.integers[2], &m.integers[1]}, {}, [&] { m.integers[2] = -3; });
     },
     R"("key":"GIQOPT","form":2,"lengths":[7],"in":[2],"out":[-3]})"},
    {"an index that the host writes into",
     [](SessionRecorder& recorder, Memory& m) {
         record(recorder, "GSEGTYPE", {&m.integers[0], &m.integers[2]}, {},
                [&] { m.integers[0] = m.integers[2] = 99; });
     },
     R"("key":"GSEGTYPE","form":2,"lengths":[9],"in":[1],"out":[99],"in_after":[99]})"},
    {"a text of which every other character stays, and one that is left",
     [](SessionRecorder& recorder, Memory& m) {
         m.text = "a\\c\n" + std::string(26, ' ');
         record(recorder, "GSYSNAME", {&m.integers[0], m.text.data(), m.tag.data()}, {30, 5}, [&] {
             m.text[0] = '\xE9';
             m.text[2] = '\0';
             m.text[29] = '"';
         });
     },
     R"("key":"GSYSNAME","form":3,"lengths":[9,30,5],"in":[1],"out":[{"text":"é\\\u0000\n)" + std::string(25, ' ') +
         R"(\"","unchanged":[[2,2],[4,29]]},{"text":"     ","unchanged":[[1,5]]}]})"},
    {"a host that asks the plug-in back before it answers",
     [](SessionRecorder& recorder, Memory& m) {
         record(recorder, "GSEGTYPE", {&m.integers[0], &m.integers[2]}, {}, [&] {
             record(recorder, "PINFOHTML", {m.text.data()}, {30}, [] {});
             m.integers[2] = 3;
         });
     },
     R"("key":"GSEGTYPE","form":2,"lengths":[9],"in":[1],"out":[3]})"},
    {"a text that is sent, with the bytes behind its NUL",
     [](SessionRecorder& recorder, Memory& m) {
         m.text.assign("<li>\0\x1F/", 7);
         record(recorder, "PINFOHTML", {m.text.data()}, {7}, [] {});
     },
     R"("key":"PINFOHTML","form":1,"lengths":[10,7],"in":["<li>\u0000\u001F/"],"out":[]})"},
    {"a text of no length at all",
     [](SessionRecorder& recorder, Memory& m) { record(recorder, "PINFOHTML", {m.text.data()}, {-3}, [] {}); },
     R"("key":"PINFOHTML","form":1,"lengths":[10,-3],"in":[""],"out":[]})"},
    {"fields of other lengths than the key has",
     [](SessionRecorder& recorder, Memory& m) {
         record(recorder, "GSYSNAME", {&m.integers[0], m.text.data(), m.tag.data()}, {2, 1},
                [&] { m.text.replace(0, 3, "abc"); });
     },
     R"("key":"GSYSNAME","form":3,"lengths":[9,2,1],"in":[1],"out":[{"text":"ab","unchanged":[]},)"
     R"({"text":" ","unchanged":[[1,1]]}]})"},
    {"a key that nobody knows",
     [](SessionRecorder& recorder, Memory& m) { record(recorder, "GNEW\"KEY", {&m.integers[0]}, {}, [] {}); },
     R"("key":"GNEW\"KEY","form":1,"lengths":[9],"in":[],"out":[]})"},
    {"another call form than the key has",
     [](SessionRecorder& recorder, Memory& m) {
         record(recorder, "GVOLUME", {&m.integers[0], &m.real, &m.integers[1]}, {}, [&] { m.real = 1; });
     },
     R"("key":"GVOLUME","form":3,"lengths":[8],"in":[],"out":[]})"},
    {"a series that nobody has counted: up to its last entry that changed",
     [](SessionRecorder& recorder, Memory& m) {
         record(recorder, "GALLBOUNDFUNC", {&m.integers[0], &m.integers[1], m.series.data(), m.other_series.data()}, {},
                [&] {
                    m.series[2] = 1;
                    m.other_series[0] = 0.5;
                });
     },
     R"("key":"GALLBOUNDFUNC","form":4,"lengths":[14],"in":[1,2],"out":[["7","7","1"],["0.5"]]})"},
    real_case(1500, "1500"),
    real_case(0.1F, "0.1"),
    real_case(-0.0F, "-0"),
    real_case(1e20F, "1e+20"),
    real_case(-std::numeric_limits<float>::denorm_min(), "-1e-45"),
    real_case(-std::numeric_limits<float>::infinity(), "-inf"),
    real_case(std::numeric_limits<float>::quiet_NaN(), "nan"),
};

TEST(SessionRecorder, WritesALineForEachExchange)
{
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const SessionFile file;
        std::string unclosed;
        {
            SessionRecorder recorder(file.path());
            Memory memory;
            c.exchange(recorder, memory);
            unclosed = file.content();
        }
        const std::string end = "{\"end\":1}\n";
        EXPECT_EQ(file.content(), unclosed + end);
        EXPECT_EQ(unclosed, "{\"velm_session\":2}\n{\"exchange\":1," + c.members + '\n');
    }
}

/// The count is that of the request just before. More than the tables hold is not in them.
TEST(SessionRecorder, TakesTheLengthOfASeriesFromItsCount)
{
    struct Counted {
        std::int32_t count;
        std::size_t entries;
    };
    for (const auto& [count, entries] : {Counted{2, 2}, {0, 0}, {-4, 0}, {2'147'483'647, Request::series_entries}}) {
        const SessionFile file;
        Memory m;
        {
            SessionRecorder recorder(file.path());
            record(recorder, "GNBWK", {&m.integers[0], &m.integers[1], &m.integers[2]}, {},
                   [&, number = count] { m.integers[2] = number; });
            for (int i = 0; i < 2; ++i) { // the second without a count before it
                record(recorder, "GALLLOADFUNC",
                       {&m.integers[0], &m.integers[1], m.series.data(), m.other_series.data()}, {}, [] {});
            }
        }
        SessionReader session(file.path());
        EXPECT_EQ(session.next()->integer(2), count);
        const RecordedExchange* const counted = session.next();
        EXPECT_EQ(counted->series(2), std::vector<float>(entries, 7));
        EXPECT_EQ(counted->series(3), std::vector<float>(entries, 8));
        EXPECT_EQ(session.next()->series(2), std::vector<float>());
    }
}

/// Fields longer than what is recorded of them, of bytes that JSON writes with six, every other of which stays.
TEST(SessionRecorder, RecordsTheBeginningOfTheLongestTexts)
{
    const SessionFile file;
    std::string name(longest_recorded_text + 5, '\1');
    const auto length = static_cast<std::int32_t>(name.size());
    {
        SessionRecorder recorder(file.path());
        std::int32_t system = 1;
        record(recorder, "GSYSNAME", {&system, name.data(), name.data()}, {length, length}, [&] {
            for (std::size_t j = 0; j < name.size(); j += 2) {
                name[j] = '\2';
            }
        });
    }
    const std::string line = lines_of(file).at(1);
    EXPECT_LT(line.size(), longest_session_line);
    EXPECT_EQ(std::ranges::count(line, '['), 2 * (1 + longest_recorded_text / 2) + 3); // ranges, and the members' own
    EXPECT_EQ(std::ranges::count(line, '\\'), 2 * longest_recorded_text);
}

} // namespace
} // namespace velm
