#include "tests/support/own_call_forms.hpp"

#include "host_link/host_exchange.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string_view>

namespace velm {

std::function<void(const OwnRequest&)> own_host;

namespace {

void require(bool holds, const char* what, const char* key)
{
    if (!holds) {
        (void)std::fprintf(stderr, "does not hold for %s: %s\n", key, what);
        std::abort();
    }
}

void exchange(const char* name, std::size_t call_form, const std::array<void*, HostKey::most_arguments>& values,
              std::va_list lengths)
{
    const auto* const key = std::find_if(std::begin(host_keys), std::end(host_keys),
                                         [&](const HostKey& known) { return known.name == std::string_view(name); });
    require(key != std::end(host_keys) && key->argument_count == call_form, "a key has its own call form", name);
    require(va_arg(lengths, std::int32_t) == key->length(), "the key's length comes first", name);
    OwnRequest request{*key, values, {}};
    std::size_t texts = 0;
    for (const Argument& argument : key->arguments) {
        if (argument.kind == Kind::text) {
            const std::int32_t length = request.text_lengths[texts++] = va_arg(lengths, std::int32_t);
            const bool any_length = argument.text_length == 0;
            require(any_length ? length > 0 : length == argument.text_length, "a text's length follows", name);
        }
    }
    own_host(request);
}

} // namespace
} // namespace velm

// NOLINTBEGIN(cert-dcl50-cpp): the host's contract
void host_exchange_1(const char* key, void* a, ...)
{
    std::va_list lengths;
    va_start(lengths, a);
    velm::exchange(key, 1, {a}, lengths);
    va_end(lengths);
}
void host_exchange_2(const char* key, void* a, void* b, ...)
{
    std::va_list lengths;
    va_start(lengths, b);
    velm::exchange(key, 2, {a, b}, lengths);
    va_end(lengths);
}
void host_exchange_3(const char* key, void* a, void* b, void* c, ...)
{
    std::va_list lengths;
    va_start(lengths, c);
    velm::exchange(key, 3, {a, b, c}, lengths);
    va_end(lengths);
}
void host_exchange_4(const char* key, void* a, void* b, void* c, void* d, ...)
{
    std::va_list lengths;
    va_start(lengths, d);
    velm::exchange(key, 4, {a, b, c, d}, lengths);
    va_end(lengths);
}
void host_exchange_5(const char* key, void* a, void* b, void* c, void* d, void* e, ...)
{
    std::va_list lengths;
    va_start(lengths, e);
    velm::exchange(key, 5, {a, b, c, d, e}, lengths);
    va_end(lengths);
}
// NOLINTEND(cert-dcl50-cpp)
