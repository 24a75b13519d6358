#include "tests/headless_host/asking.hpp"

#include "host_link/call_form.hpp"
#include "host_link/host_keys.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <sstream>

namespace velm {

namespace {

constexpr char guard = '\x1A';
constexpr std::size_t guard_bytes = 16;
constexpr std::size_t series_entries = 8; ///< longer than any series that the tests ask for

std::size_t size_of(const Argument& argument)
{
    switch (argument.kind) {
    case Kind::integer: return sizeof(std::int32_t);
    case Kind::real: return sizeof(float);
    case Kind::text: return static_cast<std::size_t>(argument.text_length);
    case Kind::series: return series_entries * sizeof(float);
    }
    return 0;
}

/// A value of the plug-in with guard bytes on both sides, itself filled with them at first.
class Slot {
public:
    explicit Slot(const Argument& argument) : argument_(argument), bytes_(size_of(argument) + 2 * guard_bytes, guard) {}

    void set(std::int32_t value) { std::memcpy(data(), &value, sizeof value); }
    [[nodiscard]] char* data() { return bytes_.data() + guard_bytes; }

    [[nodiscard]] bool guards_hold() const
    {
        const std::string guards(guard_bytes, guard);
        return bytes_.starts_with(guards) && bytes_.ends_with(guards);
    }

    [[nodiscard]] std::string in_words()
    {
        const std::string value(data(), size_of(argument_));
        if (value.find_first_not_of(guard) == std::string::npos) {
            return "?";
        }
        switch (argument_.kind) {
        case Kind::integer: return number<std::int32_t>(0);
        case Kind::real: return number<float>(0);
        case Kind::text: return '\'' + value.substr(0, value.find_last_not_of(' ') + 1) + '\'';
        case Kind::series: break;
        }
        std::string entries;
        const std::string untouched(sizeof(float), guard);
        for (std::size_t i = 0; i < series_entries && value.substr(i * sizeof(float), sizeof(float)) != untouched;
             ++i) {
            entries.append(i == 0 ? "" : " ").append(number<float>(i));
        }
        return '[' + entries + ']';
    }

private:
    template <class Number>
    [[nodiscard]] std::string number(std::size_t entry)
    {
        Number value{};
        std::memcpy(&value, data() + entry * sizeof value, sizeof value);
        std::ostringstream text;
        text << value;
        return text.str();
    }

    const Argument& argument_;
    std::string bytes_;
};

} // namespace

void call(const std::string& key_with_nul, const std::vector<void*>& v, const std::vector<std::int32_t>& t)
{
    // a copy without any byte behind it, so that reading too far is seen by the sanitizer
    const std::vector<char> bytes(key_with_nul.begin(), key_with_nul.end());
    const char* const key = bytes.data();
    const auto length = static_cast<std::int32_t>(bytes.size());
    switch (10 * v.size() + t.size()) {
    case 10: return call_form<1>(key, v[0], length);
    case 11: return call_form<1>(key, v[0], length, t[0]);
    case 20: return call_form<2>(key, v[0], v[1], length);
    case 21: return call_form<2>(key, v[0], v[1], length, t[0]);
    case 30: return call_form<3>(key, v[0], v[1], v[2], length);
    case 31: return call_form<3>(key, v[0], v[1], v[2], length, t[0]);
    case 32: return call_form<3>(key, v[0], v[1], v[2], length, t[0], t[1]);
    case 40: return call_form<4>(key, v[0], v[1], v[2], v[3], length);
    case 50: return call_form<5>(key, v[0], v[1], v[2], v[3], v[4], length);
    default: FAIL() << "no key has " << v.size() << " values with " << t.size() << " texts";
    }
}

std::string ask(const std::string& key, const std::vector<std::int32_t>& in_arguments)
{
    const auto* const found = std::ranges::find(host_keys, key, &HostKey::name);
    if (found == std::end(host_keys)) {
        return key + " is no key";
    }
    std::vector<Slot> slots;
    std::vector<std::int32_t> text_lengths;
    std::vector<std::int32_t> unused = in_arguments;
    for (std::size_t i = 0; i < found->argument_count; ++i) {
        const Argument& argument = found->arguments[i];
        slots.emplace_back(argument);
        if (argument.direction == Direction::in && !unused.empty()) {
            slots.back().set(unused.front());
            unused.erase(unused.begin());
        }
        if (argument.kind == Kind::text) {
            text_lengths.push_back(argument.text_length);
        }
    }
    EXPECT_TRUE(unused.empty()) << key << " has fewer in-arguments";

    std::vector<void*> values;
    std::ranges::transform(slots, std::back_inserter(values), &Slot::data);
    call(key + '\0', values, text_lengths);

    std::string answer;
    std::vector<std::int32_t> in_arguments_after;
    for (std::size_t i = 0; i < slots.size(); ++i) {
        EXPECT_TRUE(slots[i].guards_hold()) << key << " wrote beside argument " << i + 1;
        if (found->arguments[i].direction == Direction::out) {
            answer.append(answer.empty() ? "" : " ").append(slots[i].in_words());
        } else {
            std::memcpy(&in_arguments_after.emplace_back(), slots[i].data(), sizeof(std::int32_t));
        }
    }
    EXPECT_EQ(in_arguments_after, in_arguments) << key << " changed an in-argument";
    return answer;
}

} // namespace velm
