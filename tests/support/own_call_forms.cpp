#include "tests/support/own_call_forms.hpp"

#include "host_link/host_exchange.h"

#include <algorithm>
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

/// Reads no length that the key does not have.
void exchange(const char* name, std::size_t call_form, const std::array<void*, HostKey::most_arguments>& values,
              std::int32_t key_length, const std::array<std::int32_t, 2>& text_lengths)
{
    const auto* const key = std::find_if(std::begin(host_keys), std::end(host_keys),
                                         [&](const HostKey& known) { return known.name == std::string_view(name); });
    require(key != std::end(host_keys) && key->argument_count == call_form, "a key has its own call form", name);
    require(key_length == key->length(), "the key's length comes first", name);
    OwnRequest request{*key, values, {}};
    std::size_t texts = 0;
    for (const Argument& argument : key->arguments) {
        if (argument.kind == Kind::text) {
            const std::int32_t length = request.text_lengths[texts] = text_lengths[texts];
            ++texts;
            const bool any_length = argument.text_length == 0;
            require(any_length ? length > 0 : length == argument.text_length, "a text's length follows", name);
        }
    }
    own_host(request);
}

} // namespace
} // namespace velm

void host_exchange_1(const char* key, void* a, std::int32_t length, std::int32_t text_1)
{
    velm::exchange(key, 1, {a}, length, {text_1});
}
void host_exchange_2(const char* key, void* a, void* b, std::int32_t length, std::int32_t text_1)
{
    velm::exchange(key, 2, {a, b}, length, {text_1});
}
void host_exchange_3(const char* key, void* a, void* b, void* c, std::int32_t length, std::int32_t text_1,
                     std::int32_t text_2)
{
    velm::exchange(key, 3, {a, b, c}, length, {text_1, text_2});
}
void host_exchange_4(const char* key, void* a, void* b, void* c, void* d, std::int32_t length)
{
    velm::exchange(key, 4, {a, b, c, d}, length, {});
}
void host_exchange_5(const char* key, void* a, void* b, void* c, void* d, void* e, std::int32_t length)
{
    velm::exchange(key, 5, {a, b, c, d, e}, length, {});
}
