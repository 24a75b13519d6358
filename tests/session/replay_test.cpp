#include "session/replay.hpp"
#include "tests/headless_host/asking.hpp"
#include "tests/session/session_file.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velm {
namespace {

const std::string blanks_35(35, ' ');

/// Two exports: the first up to a series, the second nothing but a question.
const std::string session_text = R"({"velm_session":2}
{"exchange":1,"key":"GFILENAME","form":1,"lengths":[10,512],"in":[],"out":[{"text":")" +
                                 std::string(512, 'f') + R"(","unchanged":[]}]}
{"exchange":2,"key":"PINFOHTML","form":1,"lengths":[10,9],"in":["<center>\u0000"],"out":[]}
{"exchange":3,"key":"PINFOHTML","form":1,"lengths":[10,8],"in":["Built 1\u0000"],"out":[]}
{"exchange":4,"key":"PINFOHTML","form":1,"lengths":[10,5],"in":["<li>\u0000"],"out":[]}
{"exchange":5,"key":"GSEGNAME","form":2,"lengths":[9,40],"in":[1],"out":[{"text":"Bay\u0000é)" +
                                 blanks_35 + R"(","unchanged":[[6,40]]}]}
{"exchange":6,"key":"GIQOPT","form":2,"lengths":[7],"in":[2],"out":[3]}
{"exchange":7,"key":"GNOQFUNC","form":5,"lengths":[9],"in":[1,2,3],"out":["0.5","-2"]}
{"exchange":8,"key":"GALLBOUNDFUNC","form":4,"lengths":[14],"in":[1,1],"out":[["1","2"],["3"]]}
{"exchange":9,"key":"GFILENAME","form":1,"lengths":[10,512],"in":[],"out":[{"text":")" +
                                 std::string(512, ' ') + R"(","unchanged":[]}]}
{"exchange":10,"key":"GNUMSEG","form":1,"lengths":[8],"in":[],"out":[7]}
{"end":10}
)";

void send(std::string text)
{
    text += '\0';
    call(std::string("PINFOHTML") + '\0', {text.data()}, {static_cast<std::int32_t>(text.size())});
}

class Replayed {
public:
    explicit Replayed(const std::string& text = session_text, std::uint64_t export_number = 1)
        : file_(text), session_(file_.path()), replay_(session_, export_number, "out.inp")
    {
        replay_.on_stop = [this] { ++stops_; };
        velm_host_attach(&Replay::answer, &replay_);
    }
    ~Replayed() { velm_host_attach(nullptr, nullptr); }
    Replayed& operator=(Replayed&&) = delete; // neither copied nor moved

    void ask_beginning()
    {
        EXPECT_EQ(ask("GFILENAME", {}), "'out.inp'");
        send("<center>");
        send("Built 1");
        send("<li>");
    }
    void ask_rest()
    {
        EXPECT_EQ(ask("GSEGNAME", {1}), std::string("'Bay\0\xE9'", 7));
        EXPECT_EQ(ask("GIQOPT", {2}), "3");
        EXPECT_EQ(ask("GNOQFUNC", {1, 2, 3}), "0.5 -2");
        EXPECT_EQ(ask("GALLBOUNDFUNC", {1, 1}), "[1 2] [3]");
    }

    /// What stopped the replay, without the file's directory.
    [[nodiscard]] std::string reason()
    {
        replay_.finish();
        EXPECT_EQ(stops_, replay_.outcome() == Replay::Outcome::same ? 0 : 1);
        return without(file_.path().parent_path().string() + "/", replay_.reason());
    }
    [[nodiscard]] const Replay& replay() const { return replay_; }

private:
    SessionFile file_;
    SessionReader session_;
    Replay replay_;
    int stops_ = 0;
};

TEST(Replay, DoesNotCompareTheVersionPanel)
{
    for (const std::vector<std::string>& panel :
         {std::vector<std::string>{},
          {"<center>"},
          {"<center>", "Built 22"},
          {"<center>", "Built 1", "for another system", "by another compiler"}}) {
        Replayed replayed;
        EXPECT_EQ(ask("GFILENAME", {}), "'out.inp'");
        for (const std::string& fragment : panel) {
            send(fragment);
        }
        send("<li>");
        replayed.ask_rest();
        EXPECT_EQ(replayed.reason(), "");
    }
}

struct DepartureCase {
    const char* what;
    void (*ask)(Replayed& replayed);
    std::string reason;
};

const std::vector<DepartureCase> departures = {
    {"nothing asked", [](Replayed&) {}, "exchange 1 (line 2): expected GFILENAME, the plug-in asked nothing more"},
    {"another first key", [](Replayed&) { EXPECT_EQ(ask("GNUMSEG", {}), "?"); },
     "exchange 1 (line 2): expected GFILENAME, the plug-in asked GNUMSEG"},
    {"another index",
     [](Replayed& replayed) {
         replayed.ask_beginning();
         EXPECT_EQ(ask("GSEGNAME", {2}), "?");
         EXPECT_EQ(ask("GIQOPT", {2}), "?"); // all further requests stay unanswered
     },
     "exchange 5 (line 6): expected GSEGNAME(segment 1), the plug-in asked GSEGNAME(segment 2)"},
    {"another panel fragment",
     [](Replayed& replayed) {
         EXPECT_EQ(ask("GFILENAME", {}), "'out.inp'");
         send("<li>new");
         (void)replayed;
     },
     R"(exchange 4 (line 5): expected PINFOHTML("<li>" of length 5), the plug-in asked )"
     R"(PINFOHTML("<li>new" of length 8))"},
    {"another length",
     [](Replayed& replayed) {
         replayed.ask_beginning();
         std::int32_t segment = 1;
         std::string name(39, '?');
         call(std::string("GSEGNAME") + '\0', {&segment, name.data()}, {39});
         EXPECT_EQ(name, std::string(39, '?'));
     },
     "exchange 5 (line 6): expected GSEGNAME(segment 1), the plug-in asked GSEGNAME: length 39 passed for text 1, its "
     "length is 40"},
    {"a key that nobody knows",
     [](Replayed& replayed) {
         replayed.ask_beginning();
         std::int32_t value = 1;
         call(std::string("GNEW") + '\0', {&value});
     },
     R"(exchange 5 (line 6): expected GSEGNAME(segment 1), the plug-in asked unknown key "GNEW" of length 5)"},
    {"an end too early",
     [](Replayed& replayed) {
         replayed.ask_beginning();
         (void)ask("GSEGNAME", {1});
     },
     "exchange 6 (line 7): expected GIQOPT(segment 2), the plug-in asked nothing more"},
    {"a question too many",
     [](Replayed& replayed) {
         replayed.ask_beginning();
         replayed.ask_rest();
         EXPECT_EQ(ask("GNOQFUNC", {1, 2, 4}), "? ?");
     },
     "exchange 9 (line 10): expected the export's end, the plug-in asked GNOQFUNC(flow field 1, flow function 2, time "
     "pair 4)"},
};

TEST(Replay, StopsAtTheFirstDeparture)
{
    for (const DepartureCase& c : departures) {
        SCOPED_TRACE(c.what);
        Replayed replayed;
        c.ask(replayed);
        EXPECT_EQ(replayed.reason(), c.reason);
        EXPECT_EQ(replayed.replay().outcome(), Replay::Outcome::departure);
    }
}

/// An export that is complete before the recording breaks off replays like any other.
TEST(Replay, NeedsNoClosingLineBehindAWholeExport)
{
    Replayed replayed(session_text.substr(0, session_text.find(R"({"exchange":9)") + 5));
    replayed.ask_beginning();
    replayed.ask_rest();
    EXPECT_EQ(replayed.reason(), "");
}

} // namespace
} // namespace velm
