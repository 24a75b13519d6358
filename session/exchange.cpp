#include "session/exchange.hpp"

#include <charconv>

namespace velm {

std::vector<float> RecordedExchange::series(std::size_t value) const
{
    std::vector<float> reals;
    for (std::size_t place = 0; place < values[value].size(); place += sizeof(float)) {
        reals.push_back(number_at<float>(values[value], place));
    }
    return reals;
}

velm_host_request request_of(RecordedExchange& exchange)
{
    const HostKey& key = exchange.key();
    const auto form = static_cast<std::int32_t>(key.argument_count);
    velm_host_request request{key.name.data(), key.length(), exchange.key_position, form, {}, {}};
    std::size_t text = 0;
    for (std::size_t i = 0; i < key.argument_count; ++i) {
        request.values[i] = exchange.values[i].data();
        if (key.arguments[i].kind == Kind::text) {
            request.text_lengths[text++] = static_cast<std::int32_t>(exchange.values[i].size());
        }
    }
    return request;
}

std::string real_text(float value)
{
    std::array<char, 32> text{};
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

} // namespace velm
