#include "headless_host/prevelmwdll.h"

#include "headless_host/key_lookup.hpp"
#include "host_link/host_exchange.h"

#include <cstdarg>
#include <cstdint>

namespace {

velm_host_answer attached_answer = nullptr;
void* attached_context = nullptr;

/// Completes `request`, which has its key, call form and values, from the lengths and hands it on. A length
/// that the caller did not pass must not be read: only a known key in its own call form says how many there are.
void exchange(velm_host_request& request, std::va_list lengths) noexcept
{
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): the caller has started them
    request.key_length = va_arg(lengths, std::int32_t);
    request.key_position = velm::find_key(request.key, request.key_length);
    if (request.key_position != velm_unknown_key) {
        const velm::HostKey& key = velm::host_keys[request.key_position];
        if (key.argument_count == static_cast<std::size_t>(request.call_form)) {
            std::size_t text = 0;
            for (std::size_t i = 0; i < key.argument_count; ++i) {
                if (key.arguments[i].kind == velm::Kind::text) {
                    request.text_lengths[text++] = va_arg(lengths, std::int32_t);
                }
            }
        }
    }
    if (attached_answer == nullptr) {
        return;
    }
    try {
        attached_answer(attached_context, &request);
    } catch (...) { // NOLINT(bugprone-empty-catch): the caller may be C or any other language; there is no status
    }
}

} // namespace

void velm_host_attach(velm_host_answer answer, void* context)
{
    attached_answer = answer;
    attached_context = context;
}

void host_exchange_1(const char* key, void* value_1, ...)
{
    velm_host_request request{key, 0, 0, 1, {value_1}, {}};
    std::va_list lengths;
    va_start(lengths, value_1);
    exchange(request, lengths);
    va_end(lengths);
}

void host_exchange_2(const char* key, void* value_1, void* value_2, ...)
{
    velm_host_request request{key, 0, 0, 2, {value_1, value_2}, {}};
    std::va_list lengths;
    va_start(lengths, value_2);
    exchange(request, lengths);
    va_end(lengths);
}

void host_exchange_3(const char* key, void* value_1, void* value_2, void* value_3, ...)
{
    velm_host_request request{key, 0, 0, 3, {value_1, value_2, value_3}, {}};
    std::va_list lengths;
    va_start(lengths, value_3);
    exchange(request, lengths);
    va_end(lengths);
}

void host_exchange_4(const char* key, void* value_1, void* value_2, void* value_3, void* value_4, ...)
{
    velm_host_request request{key, 0, 0, 4, {value_1, value_2, value_3, value_4}, {}};
    std::va_list lengths;
    va_start(lengths, value_4);
    exchange(request, lengths);
    va_end(lengths);
}

void host_exchange_5(const char* key, void* value_1, void* value_2, void* value_3, void* value_4, void* value_5, ...)
{
    velm_host_request request{key, 0, 0, 5, {value_1, value_2, value_3, value_4, value_5}, {}};
    std::va_list lengths;
    va_start(lengths, value_5);
    exchange(request, lengths);
    va_end(lengths);
}
