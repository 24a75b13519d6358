#pragma once

#include "host_link/host_exchange.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace velm {

/// Calls the form of `values` values as a function of just these arguments: the addresses of key and values, then the
/// lengths that the key has. The call is not variadic, which some platforms pass in other places, and has no length
/// that the key does not have.
///
///     call_form<3>("GSYSNAME", &system, name, tag, 9, 30, 5);
template <std::size_t values, class... Arguments>
#if defined(__clang__)
__attribute__((no_sanitize("function"))) // the form is declared with the lengths of all its keys
#endif
void call_form(const char* key, Arguments... arguments)
{
    using Any = void (*)();
    using Exact = void (*)(const char*, std::conditional_t<std::is_pointer_v<Arguments>, void*, std::int32_t>...);
    Any form = nullptr;
    if constexpr (values == 1) {
        form = reinterpret_cast<Any>(&host_exchange_1);
    } else if constexpr (values == 2) {
        form = reinterpret_cast<Any>(&host_exchange_2);
    } else if constexpr (values == 3) {
        form = reinterpret_cast<Any>(&host_exchange_3);
    } else if constexpr (values == 4) {
        form = reinterpret_cast<Any>(&host_exchange_4);
    } else {
        static_assert(values == 5);
        form = reinterpret_cast<Any>(&host_exchange_5);
    }
    reinterpret_cast<Exact>(form)(key, arguments...);
}

} // namespace velm
