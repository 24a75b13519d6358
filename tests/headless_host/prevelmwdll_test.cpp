#include "headless_host/prevelmwdll.h"

#include "host_link/call_form.hpp"
#include "host_link/host_keys.hpp"
#include "tests/headless_host/asking.hpp"
#include "tests/support/guarded_page.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

namespace velm {
namespace {

/// Attaches itself, and keeps the requests that come.
struct Recorder {
    std::vector<velm_host_request> requests;

    Recorder() { velm_host_attach(&Recorder::record, this); }
    ~Recorder() { velm_host_attach(nullptr, nullptr); }
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    static void record(void* self, const velm_host_request* request)
    {
        static_cast<Recorder*>(self)->requests.push_back(*request);
    }
};

TEST(HostLibrary, ReadsNoByteBeyondAKeyAndTakesNoneForAnother)
{
    const GuardedPage page;
    char* const end = page.end();
    ASSERT_NE(end, nullptr);
    std::vector<std::string> strangers = {"", "X", std::string(1, '\0'), std::string(300, 'G'),
                                          std::string("gnumseg") + '\0'};
    for (const HostKey& key : host_keys) {
        const std::string name(key.name);
        strangers.push_back(name);                  // no NUL
        strangers.push_back(name.substr(1) + '\0'); // without its first character
        strangers.push_back(name + "X" + '\0');     // one more
        strangers.push_back(name + '\0' + '\0');    // a second NUL
        strangers.push_back(name.substr(0, 3) + "~" + name.substr(3) + '\0');
    }
    Recorder recorder;
    for (const std::string& key : strangers) {
        char* const at_the_end = end - key.size();
        std::ranges::copy(key, at_the_end);
        std::int32_t value = 0;
        call_form<1>(at_the_end, &value, static_cast<std::int32_t>(key.size()));
        EXPECT_EQ(recorder.requests.back().key_position, velm_unknown_key) << key;
        EXPECT_EQ(recorder.requests.back().text_lengths[0], 0) << key;
    }
    for (const std::int32_t length : {-1, -2147483647 - 1}) {
        call_form<1>(end, static_cast<void*>(nullptr), length);
        EXPECT_EQ(recorder.requests.back().key_position, velm_unknown_key);
    }
}

TEST(HostLibrary, ReadsNoTextLengthsForAnotherCallForm)
{
    Recorder recorder;
    std::int32_t value = 0;
    call_form<2>("GSYSNAME", &value, &value, 9, 30, 5);
    EXPECT_EQ(host_keys[recorder.requests[0].key_position].name, "GSYSNAME");
    EXPECT_EQ(recorder.requests[0].call_form, 2);
    EXPECT_EQ(recorder.requests[0].text_lengths[0], 0);
    EXPECT_EQ(recorder.requests[0].text_lengths[1], 0);
}

TEST(HostLibrary, LeavesARequestUnansweredWhenNobodyAnswersIt)
{
    std::int32_t value = 12;
    velm_host_attach(nullptr, nullptr);
    call_form<1>("GNUMSEG", &value, 8);
    EXPECT_EQ(value, 12);
    velm_host_attach([](void*, const velm_host_request*) { throw std::runtime_error("lost"); }, nullptr);
    EXPECT_NO_THROW(call_form<1>("GNUMSEG", &value, 8));
    EXPECT_EQ(value, 12);
    velm_host_attach(nullptr, nullptr);
}

} // namespace
} // namespace velm
