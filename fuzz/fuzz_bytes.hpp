#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

/// What a target is handed; the fuzzer's name for it, and what replay_main.cpp calls.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

namespace velm {

/// Reads a fuzz input from its first byte to its last; behind that come zeros.
class FuzzBytes {
public:
    FuzzBytes(const std::uint8_t* bytes, std::size_t size)
        : rest_(size == 0 ? "" : reinterpret_cast<const char*>(bytes), size)
    {
    }

    [[nodiscard]] bool empty() const { return rest_.empty(); }

    std::string_view take(std::size_t size)
    {
        const std::string_view taken = rest_.substr(0, size);
        rest_.remove_prefix(taken.size());
        return taken;
    }

    template <class Number>
    Number number()
    {
        Number value{};
        const std::string_view bytes = take(sizeof value);
        std::memcpy(&value, bytes.data(), bytes.size());
        return value;
    }

    std::uint8_t byte() { return number<std::uint8_t>(); }

private:
    std::string_view rest_;
};

/// Ends the process, as the fuzzer expects of a finding.
inline void expect(bool holds, const char* what)
{
    if (!holds) {
        (void)std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

} // namespace velm
