#include "session/exchange.hpp"

#include <charconv>
#include <system_error>

namespace velm {

std::string_view bytes_of(Kind kind, const RecordedValue& value)
{
    const auto bytes = [](const auto* first, std::size_t count) {
        return std::string_view(reinterpret_cast<const char*>(first), count * sizeof *first);
    };
    switch (kind) {
    case Kind::integer: return bytes(&value.integer, 1);
    case Kind::real: return bytes(&value.real, 1);
    case Kind::text: return value.text;
    case Kind::series: return bytes(value.series.data(), value.series.size());
    }
    return {};
}

velm_host_request request_of(RecordedExchange& exchange)
{
    const HostKey& key = exchange.key();
    const auto form = static_cast<std::int32_t>(key.argument_count);
    velm_host_request request{key.name.data(), key.length(), exchange.key_position, form, {}, {}};
    std::size_t text = 0;
    for (std::size_t i = 0; i < key.argument_count; ++i) {
        const std::string_view bytes = bytes_of(key.arguments[i].kind, exchange.values[i]);
        request.values[i] = const_cast<char*>(bytes.data()); // the exchange may be written to
        if (key.arguments[i].kind == Kind::text) {
            request.text_lengths[text++] = static_cast<std::int32_t>(bytes.size());
        }
    }
    return request;
}

std::string real_text(float value)
{
    std::array<char, 32> text{};
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

bool read_real(std::string_view text, float& value)
{
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    return stop == end && error == std::errc();
}

} // namespace velm
