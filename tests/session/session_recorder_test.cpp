#include "headless_host/key_lookup.hpp"
#include "headless_host/request.hpp"
#include "session/session_recorder.hpp"
#include "tests/session/session_file.hpp"

#include <gtest/gtest.h>

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
    std::string text = std::string(30, '\0');
    std::string tag = std::string(5, ' ');
    std::vector<float> series = std::vector<float>(Request::series_entries, 7);
    std::vector<float> other_series = std::vector<float>(Request::series_entries, 8);
};

struct Exchange {
    std::string key; ///< with its NUL
    std::vector<void*> values;
    std::vector<std::int32_t> text_lengths;
};

void record(SessionRecorder& recorder, const Exchange& exchange, const std::function<void()>& answer)
{
    const auto length = static_cast<std::int32_t>(exchange.key.size());
    velm_host_request request{exchange.key.data(),
                              length,
                              find_key(exchange.key.data(), length),
                              static_cast<std::int32_t>(exchange.values.size()),
                              {},
                              {}};
    std::ranges::copy(exchange.values, request.values);
    std::ranges::copy(exchange.text_lengths, request.text_lengths);
    recorder.record(request, answer);
}

/// The session's lines behind the first, without what all of them begin with.
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

std::string key(const char* name)
{
    return std::string(name) + '\0';
}

const std::string blanks_24(24, ' ');

struct Case {
    const char* what;
    std::function<void(SessionRecorder&, Memory&)> exchange;
    std::string members; ///< of the line behind its number
};

Case real_case(float value, const std::string& expected)
{
    return {"a real",
            [value](SessionRecorder& recorder, Memory& m) {
                record(recorder, {key("GVOLUME"), {&m.integers[0], &m.real}, {}}, [&] { m.real = value; });
            },
            R"("key":"GVOLUME","in":[1],"out":[")" + expected + R"("]})"};
}

const std::vector<Case> cases = {
    {"an integer behind its index",
     [](SessionRecorder& recorder, Memory& m) {
         record(recorder, {key("GSEGTYPE"), {&m.integers[0], &m.integers[2]}, {}}, [&] { m.integers[2] = -5; });
     },
     R"("key":"GSEGTYPE","in":[1],"out":[-5]})"},
    {"an integer before its index",
     [](SessionRecorder& recorder, Memory& m) {
         record(recorder, {key("GIQOPT"), {&m.integers[2], &m.integers[1]}, {}}, [&] { m.integers[2] = 3; });
     },
     R"("key":"GIQOPT","in":[2],"out":[3]})"},
    {"an index that the host writes into",
     [](SessionRecorder& recorder, Memory& m) {
         record(recorder, {key("GSEGTYPE"), {&m.integers[0], &m.integers[2]}, {}},
                [&] { m.integers[0] = m.integers[2] = 99; });
     },
     R"("key":"GSEGTYPE","in":[1],"out":[99],"in_after":[99]})"},
    {"texts that the host ends with a NUL, changes in the middle, or leaves",
     [](SessionRecorder& recorder, Memory& m) {
         m.text[3] = 'x';
         record(recorder, {key("GSYSNAME"), {&m.integers[0], m.text.data(), m.tag.data()}, {30, 5}},
                [&] { m.text.replace(0, 3, "S\xE9\""); });
     },
     R"("key":"GSYSNAME","in":[1],"out":[{"text":"Sé\"x)" +
         [] {
             std::string nuls;
             for (int i = 4; i < 30; ++i) {
                 nuls += R"(\u0000)";
             }
             return nuls;
         }() +
         R"(","unchanged":[[4,30]]},{"text":"     ","unchanged":[[1,5]]}]})"},
    {"a text in which every other character stays",
     [](SessionRecorder& recorder, Memory& m) {
         m.text = "a\\c\x7F\x9F\xA0" + blanks_24;
         record(recorder, {key("GSYSNAME"), {&m.integers[0], m.text.data(), m.tag.data()}, {30, 5}}, [&] {
             m.text[0] = 'b';
             m.text[2] = 'd';
             m.text[29] = '!';
             m.tag = "12345";
         });
     },
     R"("key":"GSYSNAME","in":[1],"out":[{"text":"b\\d\u007f\u009f)"
     "\xC2\xA0" +
         blanks_24.substr(1) + R"(!","unchanged":[[2,2],[4,29]]},{"text":"12345","unchanged":[]}]})"},
    {"a host that asks the plug-in back before it answers",
     [](SessionRecorder& recorder, Memory& m) {
         record(recorder, {key("GSEGTYPE"), {&m.integers[0], &m.integers[2]}, {}}, [&] {
             record(recorder, {key("PINFOHTML"), {m.text.data()}, {30}}, [] {});
             m.integers[2] = 3;
         });
     },
     R"("key":"GSEGTYPE","in":[1],"out":[3]})"},
    {"a text that is sent, with the bytes behind its NUL",
     [](SessionRecorder& recorder, Memory& m) {
         m.text.assign("<li>\0\t/", 7);
         record(recorder, {key("PINFOHTML"), {m.text.data()}, {7}}, [] {});
     },
     R"("key":"PINFOHTML","form":1,"lengths":[10,7],"in":["<li>\u0000\u0009/"],"out":[]})"},
    {"a text of no length at all",
     [](SessionRecorder& recorder, Memory& m) {
         record(recorder, {key("PINFOHTML"), {m.text.data()}, {-3}}, [] {});
     },
     R"("key":"PINFOHTML","form":1,"lengths":[10,-3],"in":[""],"out":[]})"},
    {"a field of another length than the key has",
     [](SessionRecorder& recorder, Memory& m) {
         record(recorder, {key("GSYSNAME"), {&m.integers[0], m.text.data(), m.tag.data()}, {2, 1}},
                [&] { m.text.replace(0, 2, "ab"); });
     },
     R"("key":"GSYSNAME","form":3,"lengths":[9,2,1],"in":[1],"out":[{"text":"ab","unchanged":[]},)"
     R"({"text":" ","unchanged":[[1,1]]}]})"},
    {"a key that nobody knows",
     [](SessionRecorder& recorder, Memory& m) {
         record(recorder, {key("GNEW\"KEY"), {&m.integers[0]}, {}}, [&] { m.integers[0] = 4; });
     },
     R"("key":"GNEW\"KEY","form":1,"lengths":[9],"in":[],"out":[]})"},
    {"another call form than the key has",
     [](SessionRecorder& recorder, Memory& m) {
         record(recorder, {key("GVOLUME"), {&m.integers[0], &m.real, &m.integers[1]}, {}}, [&] { m.real = 1; });
     },
     R"("key":"GVOLUME","form":3,"lengths":[8],"in":[],"out":[]})"},
    {"a series that nobody has counted: up to its last entry that changed",
     [](SessionRecorder& recorder, Memory& m) {
         record(recorder,
                {key("GALLBOUNDFUNC"), {&m.integers[0], &m.integers[1], m.series.data(), m.other_series.data()}, {}},
                [&] {
                    m.series[2] = 1;
                    m.other_series[0] = 0.5;
                });
     },
     R"("key":"GALLBOUNDFUNC","in":[1,2],)"
     R"("out":[["7 40e00000","7 40e00000","1 3f800000"],["0.5 3f000000"]]})"},
    real_case(1500, "1500 44bb8000"),
    real_case(0.1F, "0.1 3dcccccd"),
    real_case(-0.0F, "-0 80000000"),
    real_case(-16777215, "-16777215 cb7fffff"),
    real_case(16777216, "16777216 4b800000"),
    real_case(1e20F, "1e+20 60ad78ec"),
    real_case(-std::numeric_limits<float>::denorm_min(), "-1e-45 80000001"),
    real_case(std::numeric_limits<float>::infinity(), "inf 7f800000"),
    real_case(std::bit_cast<float>(0xFFC12345U), "-nan ffc12345"),
};

TEST(SessionRecorder, WritesALineForEachExchange)
{
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const SessionFile file;
        {
            SessionRecorder recorder(file.path());
            Memory memory;
            c.exchange(recorder, memory);
            const std::string unclosed = file.content();
            EXPECT_EQ(unclosed[unclosed.find_last_not_of('\0')], '\n'); // the next line's place is clean
        }
        const std::vector<std::string> expected = {R"({"velm_session":1})", R"({"exchange":1,)" + c.members,
                                                   R"({"end":1})"};
        EXPECT_EQ(lines_of(file), expected);
    }
}

/// The count is that of the request just before, when it is about the same item.
TEST(SessionRecorder, TakesTheLengthOfASeriesFromItsCount)
{
    struct Counted {
        std::int32_t count;
        std::int32_t item;
        const char* times;
    };
    const Counted counted[] = {
        {2, 2, R"(["1 3f800000","7 40e00000"])"},
        {0, 2, "[]"},
        {-4, 2, "[]"},
        {2, 1, R"(["1 3f800000"])"}, // of another boundary: up to the last change
    };
    for (const Counted& c : counted) {
        const SessionFile file;
        Memory m;
        {
            SessionRecorder recorder(file.path());
            std::int32_t item = c.item;
            record(recorder, {key("GNBFP"), {&m.integers[0], &item, &m.integers[2]}, {}},
                   [&] { m.integers[2] = c.count; });
            record(recorder,
                   {key("GALLBOUNDFUNC"), {&m.integers[0], &m.integers[1], m.series.data(), m.other_series.data()}, {}},
                   [&] { m.series[0] = 1; });
        }
        const std::string line = lines_of(file).at(2);
        EXPECT_NE(line.find(R"("out":[)" + std::string(c.times) + ','), std::string::npos) << line.substr(0, 200);
    }
}

TEST(SessionRecorder, WritesNoMoreOfASeriesThanTheTablesHold)
{
    const SessionFile file;
    Memory m;
    {
        SessionRecorder recorder(file.path());
        record(recorder, {key("GNBWK"), {&m.integers[0], &m.integers[1], &m.integers[2]}, {}},
               [&] { m.integers[2] = std::numeric_limits<std::int32_t>::max(); });
        record(recorder,
               {key("GALLLOADFUNC"), {&m.integers[0], &m.integers[1], m.series.data(), m.other_series.data()}, {}},
               [] {});
    }
    EXPECT_EQ(reading(file), "2 exchanges, closed");
    const auto quoted = static_cast<std::size_t>(std::ranges::count(lines_of(file).at(2), '"') / 2);
    EXPECT_EQ(quoted, 2 * Request::series_entries + 5); // four members and the key
}

/// The most that a line without a series can be: two fields as long as they are recorded, of unprintable bytes, of
/// which every other one stays.
TEST(SessionRecorder, HasRoomForTheLongestTexts)
{
    const SessionFile file;
    const std::string before(longest_recorded_text, '\1');
    std::string name = before;
    std::string tag = before;
    {
        SessionRecorder recorder(file.path());
        std::int32_t system = 1;
        const auto length = static_cast<std::int32_t>(before.size());
        for (int i = 0; i < 3; ++i) { // about two blocks each
            record(recorder, {key("GSYSNAME"), {&system, name.data(), tag.data()}, {length, length}}, [&] {
                for (std::size_t j = 0; j < name.size(); j += 2) {
                    name[j] = tag[j] ^= 2;
                }
            });
        }
    }
    const std::vector<std::string> lines = lines_of(file);
    EXPECT_EQ(lines.at(1).size(), lines.at(3).size());
    EXPECT_EQ(std::ranges::count(lines.at(3), '['), 2 * (1 + before.size() / 2) + 3); // ranges, and the members' own
    EXPECT_EQ(lines.at(4), R"({"end":3})");
}

TEST(SessionRecorder, LeavesAnExistingFileAlone)
{
    const SessionFile file("kept");
    EXPECT_THROW(SessionRecorder{file.path()}, std::system_error);
    EXPECT_EQ(file.content(), "kept");
}

/// What has been recorded is in the file before anybody closes it, over the borders of the blocks it grows by.
TEST(SessionRecorder, NeedsNoClosingForWhatItHasWritten)
{
    const SessionFile file;
    const SessionFile copy;
    SessionRecorder recorder(file.path());
    Memory m;
    constexpr std::size_t exchanges = 40'000; // about 3 blocks
    for (std::size_t i = 0; i < exchanges; ++i) {
        record(recorder, {key("GSEGTYPE"), {&m.integers[0], &m.integers[2]}, {}}, [] {});
    }
    copy.write(file.content());
    EXPECT_EQ(reading(copy), "40000 exchanges, breaks off at line 40002, column 1");
}

} // namespace
} // namespace velm
