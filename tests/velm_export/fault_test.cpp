// Faults in the n-th place, for every n: of the file, of storage, of the host. The host's call forms are this test's
// own, so that the host can throw; the plug-in's objects are linked in, so that the file and storage can fail.

#include "Utilities/Export/velm_export/export_to.hpp"
#include "Utilities/Export/velm_export/sections.hpp"
#include "Utilities/IMPORT/import_export.hpp"
#include "tests/support/own_call_forms.hpp"
#include "tests/support/scripted_file.hpp"
#include "tests/support/scripted_host.hpp"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <new>
#include <pthread.h>
#include <stdexcept>
#include <thread>
#include <utility>

namespace {

velm::ScriptedHost* host = nullptr;
int requests_until_the_host_throws = 0; ///< 0: it does not
bool throws_no_exception = false;       ///< but a number
bool listens = true;                    ///< to what an export says of its failure; else it throws there too
int allocations_until_failure = 0;      ///< 0: storage does not fail
std::atomic<std::size_t> allocated = 0; ///< bytes, whether released or not

/// Storage that others than the plug-in ask for does not count.
class Uncounted {
public:
    Uncounted() : left_(std::exchange(allocations_until_failure, 0)) {}
    ~Uncounted() { allocations_until_failure = left_; }
    Uncounted& operator=(Uncounted&&) = delete; // neither copied nor moved

private:
    int left_;
};

/// Hands a request on as a host library does.
void answer(const velm::OwnRequest& own)
{
    const Uncounted uncounted;
    velm_host_request request{own.key.name.data(), own.key.length(), 0, 0, {}, {}};
    request.key_position = static_cast<std::int32_t>(&own.key - velm::host_keys);
    request.call_form = static_cast<std::int32_t>(own.key.argument_count);
    std::ranges::copy(own.values, request.values);
    std::ranges::copy(own.text_lengths, request.text_lengths);
    if (own.key.name == "PINFOHTML") {
        --request.text_lengths[0]; // fragments are compared without their NUL
    }
    host->serve(request);
    if (!listens && !host->fragments.empty() && host->fragments.back().find("color: red") != std::string::npos) {
        throw std::runtime_error("nobody listens");
    }
    if (requests_until_the_host_throws != 0 && --requests_until_the_host_throws == 0) {
        if (throws_no_exception) {
            throw 7; // NOLINT(hicpp-exception-baseclass): hosts throw what they like
        }
        throw std::runtime_error("<river.db> & its lock");
    }
}

} // namespace

// not inlined: compilers take malloc and delete in one place for a mistake
[[gnu::noinline]] void* operator new(std::size_t size)
{
    if (allocations_until_failure != 0 && --allocations_until_failure == 0) {
        throw std::bad_alloc();
    }
    allocated += size;
    if (void* storage = std::malloc(size == 0 ? 1 : size)) {
        return storage;
    }
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* storage) noexcept
{
    std::free(storage);
}
[[gnu::noinline]] void operator delete(void* storage, std::size_t /*size*/) noexcept
{
    std::free(storage);
}

namespace velm {
namespace {

const char* const completion = "File Export is Complete</span></li>";

const std::string small_model =
    "GNUMSYS() = 2; GSYSNAME = \"x\" \"y\"; GNUMSEG() = 3; GNFIELD() = 3; GNINQ = 1; GNOWK = 1; "
    "GNUMTFTYPE() = 1002; GTFISC = 1; GNUMTIMEFUNC = -1; GNUMCONST() = 1002; ";

/// What one export comes to.
struct Outcome {
    std::vector<std::string> requests;
    std::vector<std::string> fragments;
    std::vector<std::string> operations;
    std::string content;
    std::string standard_error;

    [[nodiscard]] bool complete() const { return fragments.back() == completion; }
};

Outcome outcome(const std::string& script, int failing_operation = 0, int failing_allocation = 0,
                int failing_request = 0)
{
    ScriptedHost scripted(script, "model.inp");
    ScriptedFile file;
    file.failing_operation = failing_operation;
    file.operations.reserve(64); // the file asks for no storage of its own while the export runs
    file.content.reserve(5'000'000);
    host = &scripted;
    own_host = answer;
    testing::internal::CaptureStderr();
    requests_until_the_host_throws = failing_request;
    allocations_until_failure = failing_allocation;
    export_and_report(file);
    allocations_until_failure = 0;
    requests_until_the_host_throws = 0;
    return {scripted.requests, scripted.fragments, file.operations, file.content,
            testing::internal::GetCapturedStderr()};
}

/// Everything that a failed export owes: what it said, where it stopped, and that the next one is right.
void check_failure(const Outcome& failed, const Outcome& sound, const std::string& message,
                   const std::string& operation, const std::string& message_in_page = "")
{
    EXPECT_EQ(failed.standard_error, "? " + message + "\n? " + operation + " error on channel 5\n");
    ASSERT_GE(failed.fragments.size(), 2U);
    const std::size_t before = failed.fragments.size() - 2; // as many as the sound export had posted by then
    EXPECT_EQ(failed.fragments[before], "<li><span style=\"font-weight: bold; color: red;\">");
    EXPECT_EQ(failed.fragments[before + 1],
              "File Export failed: " + (message_in_page.empty() ? message : message_in_page) + " (" + operation +
                  " error on channel 5)</span></li>");
    EXPECT_TRUE(std::equal(failed.fragments.begin(), failed.fragments.end() - 2, sound.fragments.begin()));
    EXPECT_TRUE(std::equal(failed.requests.begin(), failed.requests.end(), sound.requests.begin()));
    EXPECT_EQ(failed.content, sound.content.substr(0, failed.content.size()));
}

/// 100,000 pairs, some ten blocks of the file.
const std::string large_model = small_model + "GNOBC(1) = 1; GNBFP(1,1) = 100000";

TEST(FaultOfTheFile, ends_the_export_wherever_it_comes)
{
    const Outcome sound = outcome(large_model);
    ASSERT_TRUE(sound.complete());
    const auto operations = static_cast<int>(sound.operations.size());
    ASSERT_GE(operations, 6);
    for (int n = 1; n <= operations; ++n) {
        SCOPED_TRACE("operation " + std::to_string(n));
        const Outcome failed = outcome(large_model, n);
        check_failure(failed, sound, "No space left on device",
                      failed.operations.back().substr(0, 5) == "OPEN " ? "OPEN" : failed.operations.back());
        EXPECT_EQ(failed.operations.size(), static_cast<std::size_t>(n)) << "the file was left alone after its failure";
        const bool early = n < operations - 1; // the last write and the close come when all is asked
        EXPECT_EQ(early, failed.requests.size() < sound.requests.size());
        EXPECT_EQ(outcome(large_model).content, sound.content);
    }
}

TEST(ShortageOfStorage, ends_the_export_wherever_it_comes)
{
    const Outcome sound = outcome(small_model);
    ASSERT_TRUE(sound.complete());
    int n = 1;
    for (;; ++n) {
        SCOPED_TRACE("allocation " + std::to_string(n));
        model = {}; // as in a fresh process, where every table is to be made
        const Outcome failed = outcome(small_model, 0, n);
        if (failed.complete()) {
            break;
        }
        check_failure(failed, sound, "storage cannot be obtained", "EXPORT");
        EXPECT_EQ(outcome(small_model).content, sound.content);
    }
    EXPECT_GT(n, 8);
}

TEST(HostThatThrows, ends_the_export_wherever_it_throws)
{
    const std::string script = "GNUMSYS() = 2; GNUMSEG() = 3; GNOBC = 1; GNBFP = 2";
    const Outcome sound = outcome(script);
    const auto asked = static_cast<int>(sound.requests.size() + sound.fragments.size());
    ASSERT_GT(asked, 150);
    for (int n = 1; n <= asked; ++n) {
        SCOPED_TRACE("request " + std::to_string(n));
        const Outcome failed = outcome(script, 0, 0, n);
        check_failure(failed, sound, "<river.db> & its lock", "EXPORT", "&lt;river.db&gt; &amp; its lock");
        EXPECT_EQ(failed.requests.size() + failed.fragments.size(), static_cast<std::size_t>(n) + 2);
        EXPECT_EQ(outcome(script).content, sound.content);
    }
}

TEST(HostThatThrows, need_throw_no_exception_nor_listen)
{
    const Outcome sound = outcome(small_model);
    throws_no_exception = true;
    check_failure(outcome(small_model, 0, 0, 100), sound, "the host has thrown an exception", "EXPORT");
    listens = false;
    const Outcome unheard = outcome(small_model, 0, 0, 100);
    listens = true;
    throws_no_exception = false;
    EXPECT_EQ(unheard.fragments.back(), "<li><span style=\"font-weight: bold; color: red;\">");
    EXPECT_EQ(outcome(small_model).content, sound.content);
}

/// As a host does that ends its thread: the forced unwinding goes through the plug-in.
TEST(HostThatEndsItsThread, ends_the_export_with_it_and_keeps_the_records)
{
    const std::string script = "GNUMSYS() = 2; GNUMSEG() = 3; GNOBC = 1; GNBFP = 2";
    const Outcome sound = outcome(script);
    const auto asked = static_cast<int>(sound.requests.size() + sound.fragments.size());
    for (int n = 1; n <= asked; ++n) {
        SCOPED_TRACE("request " + std::to_string(n));
        ScriptedHost scripted(script, "model.inp");
        ScriptedFile file;
        int left = n;
        own_host = [&](const OwnRequest& own) {
            if (--left == 0) {
                pthread_exit(nullptr);
            }
            answer(own);
        };
        host = &scripted;
        std::thread([&] { export_and_report(file); }).join();
        EXPECT_TRUE(sound.content.starts_with(file.content));
        EXPECT_TRUE(file.content.empty() ? scripted.requests.size() < 2 : file.content.ends_with("\r\n"));
        EXPECT_TRUE(std::equal(scripted.fragments.begin(), scripted.fragments.end(), sound.fragments.begin()));
        EXPECT_EQ(outcome(script).content, sound.content);
    }
}

TEST(HostThatKeepsAddresses, changes_no_bound_that_has_been_taken)
{
    const std::string script = "GNUMSEG() = 3; GNUMSYS() = 1; GNOBC = 1; GNBFP = 1";
    ScriptedHost scripted(script, "model.inp");
    ScriptedFile file;
    std::int32_t* systems = nullptr;
    std::int32_t* segments = nullptr;
    std::int32_t* pairs = nullptr;
    own_host = [&](const OwnRequest& own) {
        answer(own);
        if (own.key.name == "GNUMSYS") {
            systems = &own.value<std::int32_t>(0);
        } else if (own.key.name == "GNOBC") {
            *systems = 2; // too late for the boundaries, in time for the loads
        } else if (own.key.name == "GNUMSEG") {
            segments = &own.value<std::int32_t>(0);
        } else if (own.key.name == "GBEDOPT") {
            *segments = 1;
        } else if (own.key.name == "GNBFP") {
            pairs = &own.value<std::int32_t>(2);
        } else if (own.key.name == "GALLBOUNDFUNC") {
            *pairs = 2'000'000;
        }
    };
    host = &scripted;
    export_and_report(file);
    const auto times = [&](const char* key) {
        return std::ranges::count_if(scripted.requests, [&](auto& asked) { return asked.starts_with(key); });
    };
    for (const auto& [key, expected] :
         {std::pair("GSEGNAME", 3), {"GWEIRTYPE", 3}, {"GNOBC", 1}, {"GNOWK", 2}, {"GINITC", 2}}) {
        EXPECT_EQ(times(key), expected) << key;
    }
    EXPECT_TRUE(scripted.fragments.back() == completion && file.content.size() < 10'000) << file.content.size();
}

TEST(HostThatAnnouncesMoreThanItDelivers, costs_no_storage)
{
    for (const std::string_view count : {"GNUMSYS", "GNUMSEG", "GNFIELD", "GNUMTFTYPE", "GNUMPARAMTYPE", "GNUMCONST"}) {
        SCOPED_TRACE(count);
        ScriptedFile file;
        file.content.reserve(50'000'000);
        int asked = 0;
        own_host = [&](const OwnRequest& own) {
            if (own.key.name == "GFILENAME") {
                std::strcpy(&own.value<char>(0), "model.inp");
            } else if (own.key.name == count) {
                own.value<std::int32_t>(0) = 2'147'483'647;
            } else if (own.key.name != "PINFOHTML" && ++asked == 300'000) {
                throw std::runtime_error("enough");
            }
        };
        model = {};
        const std::size_t before = allocated;
        testing::internal::CaptureStderr();
        export_and_report(file);
        testing::internal::GetCapturedStderr();
        EXPECT_EQ(asked, 300'000);
        EXPECT_LT(allocated - before, 1'200'000U) << "buffer and series tables, and little else";
    }
}

TEST(HostThatExportsWhileItIsAsked, is_refused_and_the_first_export_goes_on)
{
    const Outcome sound = outcome(small_model);
    ScriptedHost scripted(small_model, "model.inp");
    ScriptedFile file;
    host = &scripted;
    own_host = answer;
    bool nested = false;
    scripted.on_request = [&](const std::string& request) {
        if (request.starts_with("GNUMSEG") && !std::exchange(nested, true)) {
            importexport();
            std::thread(importexport).join();
        }
    };
    testing::internal::CaptureStderr();
    export_and_report(file);
    const std::string refusal = "? another export is under way\n? EXPORT error on channel 5\n";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), refusal + refusal);
    EXPECT_EQ(scripted.requests, sound.requests);
    EXPECT_EQ(file.content, sound.content);
    EXPECT_EQ(scripted.fragments.size(), sound.fragments.size() + 4);
    EXPECT_EQ(scripted.fragments.back(), completion);
}

} // namespace
} // namespace velm
