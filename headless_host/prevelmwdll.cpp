#include "headless_host/prevelmwdll.h"

#include "headless_host/key_lookup.hpp"
#include "host_link/host_exchange.h"

#include <algorithm>
#include <cstdint>
#include <cxxabi.h>
#include <initializer_list>

namespace {

velm_host_answer attached_answer = nullptr;
void* attached_context = nullptr;

/// Resolves the key and hands the request on. Of the lengths of texts a call has those of its key, and only these are
/// read: others hold nothing.
void exchange(const char* key, std::initializer_list<void*> values, std::int32_t key_length,
              std::initializer_list<std::int32_t> text_lengths)
{
    velm_host_request request{key, key_length, velm::find_key(key, key_length), 0, {}, {}};
    request.call_form = static_cast<std::int32_t>(values.size());
    std::copy(values.begin(), values.end(), request.values);
    if (request.key_position != velm_unknown_key) {
        const velm::HostKey& known = velm::host_keys[request.key_position];
        if (known.argument_count == values.size()) {
            const auto texts = std::ranges::count(known.arguments, velm::Kind::text, &velm::Argument::kind);
            std::copy_n(text_lengths.begin(), texts, request.text_lengths);
        }
    }
    if (attached_answer == nullptr) {
        return;
    }
    try {
        attached_answer(attached_context, &request);
    } catch (abi::__forced_unwind&) { // the thread ends, and its stack unwinds to the end
        throw;
    } catch (...) { // NOLINT(bugprone-empty-catch): the caller may be C or any other language; there is no status
    }
}

} // namespace

void velm_host_attach(velm_host_answer answer, void* context)
{
    attached_answer = answer;
    attached_context = context;
}

void host_exchange_1(const char* key, void* value_1, std::int32_t key_length, std::int32_t text_length_1)
{
    exchange(key, {value_1}, key_length, {text_length_1});
}

void host_exchange_2(const char* key, void* value_1, void* value_2, std::int32_t key_length, std::int32_t text_length_1)
{
    exchange(key, {value_1, value_2}, key_length, {text_length_1});
}

void host_exchange_3(const char* key, void* value_1, void* value_2, void* value_3, std::int32_t key_length,
                     std::int32_t text_length_1, std::int32_t text_length_2)
{
    exchange(key, {value_1, value_2, value_3}, key_length, {text_length_1, text_length_2});
}

void host_exchange_4(const char* key, void* value_1, void* value_2, void* value_3, void* value_4,
                     std::int32_t key_length)
{
    exchange(key, {value_1, value_2, value_3, value_4}, key_length, {});
}

void host_exchange_5(const char* key, void* value_1, void* value_2, void* value_3, void* value_4, void* value_5,
                     std::int32_t key_length)
{
    exchange(key, {value_1, value_2, value_3, value_4, value_5}, key_length, {});
}
