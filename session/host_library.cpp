#include "session/host_library.hpp"

#include "session/exchange_line.hpp"

#include <cstddef>
#include <cstdint>
#include <utility>

namespace velm {
namespace {

template <std::size_t, class Type>
using Repeated = Type;

/// Calls the form of so many values with the key's length and so many lengths of texts, and no more.
template <std::size_t... value, std::size_t... text>
void call(const HostLibrary& host, const velm_host_request& request, std::index_sequence<value...>,
          std::index_sequence<text...>)
{
    using Form = void (*)(const char*, Repeated<value, void*>..., std::int32_t, Repeated<text, std::int32_t>...);
    const auto form = reinterpret_cast<Form>(host.exchange[sizeof...(value) - 1]);
    form(request.key, request.values[value]..., request.key_length, request.text_lengths[text]...);
}

template <std::size_t values>
void call(const HostLibrary& host, const velm_host_request& request)
{
    constexpr auto all = std::make_index_sequence<values>();
    switch (text_count(request)) {
    case 0: return call(host, request, all, std::make_index_sequence<0>());
    case 1: return call(host, request, all, std::make_index_sequence<1>());
    default: return call(host, request, all, std::make_index_sequence<2>());
    }
}

} // namespace

void forward(const HostLibrary& host, const velm_host_request& request)
{
    switch (request.call_form) {
    case 1: return call<1>(host, request);
    case 2: return call<2>(host, request);
    case 3: return call<3>(host, request);
    case 4: return call<4>(host, request);
    default: return call<5>(host, request);
    }
}

} // namespace velm
