#include "session/host_library.hpp"

#include "host_link/host_keys.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

namespace velm {
namespace {

/// Calls the form of `values` values with the key's length and `texts` lengths of texts, and no more.
template <std::size_t values, std::size_t texts>
void call(HostLibrary::Procedure procedure, const velm_host_request& request)
{
    [&]<std::size_t... value, std::size_t... text>(std::index_sequence<value...>, std::index_sequence<text...>)
    {
        using Form = void (*)(const char*, std::remove_cvref_t<decltype(request.values[value])>..., std::int32_t,
                              std::remove_cvref_t<decltype(request.text_lengths[text])>...);
        reinterpret_cast<Form>(procedure)(request.key, request.values[value]..., request.key_length,
                                          request.text_lengths[text]...);
    }
    (std::make_index_sequence<values>{}, std::make_index_sequence<texts>{});
}

template <std::size_t values>
void call(HostLibrary::Procedure procedure, const velm_host_request& request, std::ptrdiff_t texts)
{
    switch (texts) {
    case 0: return call<values, 0>(procedure, request);
    case 1: return call<values, 1>(procedure, request);
    default: return call<values, 2>(procedure, request);
    }
}

/// How many lengths of texts came with the request: only a known key in its own form has any that are known.
std::ptrdiff_t text_count(const velm_host_request& request)
{
    if (request.key_position == velm_unknown_key) {
        return 0;
    }
    const HostKey& key = host_keys[request.key_position];
    const bool own_form = key.argument_count == static_cast<std::size_t>(request.call_form);
    return own_form ? std::ranges::count(key.arguments, Kind::text, &Argument::kind) : 0;
}

} // namespace

void forward(const HostLibrary& host, const velm_host_request& request)
{
    const auto procedure = host.exchange.at(static_cast<std::size_t>(request.call_form) - 1);
    const auto texts = text_count(request);
    switch (request.call_form) {
    case 1: return call<1>(procedure, request, texts);
    case 2: return call<2>(procedure, request, texts);
    case 3: return call<3>(procedure, request, texts);
    case 4: return call<4>(procedure, request, texts);
    default: return call<5>(procedure, request, texts);
    }
}

} // namespace velm
