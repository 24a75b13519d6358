#include "report/page_data.hpp"

#include "model_store/latin1.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <functional>

namespace velm {

void PageData::put(std::string_view member, bool value)
{
    name(member);
    json_.Bool(value);
}

void PageData::put_utf8(std::string_view member, std::string_view text)
{
    name(member);
    json_.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

void PageData::put_latin1(std::string_view member, std::string_view text)
{
    put_utf8(member, utf8_from_latin1(text));
}

void PageData::put_numbers(std::string_view member, std::span<const float> numbers)
{
    const bool same = !numbers.empty() && std::isfinite(numbers.front()) &&
                      std::all_of(numbers.begin(), numbers.end(), [&](float one) { return one == numbers.front(); });
    if (same) {
        put(member, static_cast<double>(numbers.front()));
        return;
    }
    const std::string_view bytes(reinterpret_cast<const char*>(numbers.data()), numbers.size_bytes());
    const std::size_t hash = std::hash<std::string_view>{}(bytes);
    const auto [first, last] = runs_.equal_range(hash);
    const auto known = std::find_if(first, last, [&](const auto& run) {
        const auto& [begin, count] = run.second;
        return count == numbers.size() && std::memcmp(numbers_.data() + begin, numbers.data(), bytes.size()) == 0;
    });
    const std::size_t begin = known == last ? numbers_.size() : known->second.first;
    if (known == last) {
        runs_.emplace(hash, std::pair{begin, numbers.size()});
        numbers_.insert(numbers_.end(), numbers.begin(), numbers.end());
    }
    begin_array(member);
    json_.Uint64(begin);
    json_.Uint64(numbers.size());
    end_array();
}

std::string PageData::json()
{
    json_.EndObject();
    std::string text;
    text.reserve(buffer_.GetSize());
    for (const char character : std::string_view(buffer_.GetString(), buffer_.GetSize())) {
        if (character == '<') {
            text += "\\u003c"; // only texts have it
        } else {
            text += character;
        }
    }
    return text;
}

std::string PageData::packed_numbers() const
{
    static_assert(std::endian::native == std::endian::little);
    constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const auto* const bytes = reinterpret_cast<const unsigned char*>(numbers_.data());
    const std::size_t size = numbers_.size() * sizeof(float);
    std::string text;
    text.reserve((size + 2) / 3 * 4);
    for (std::size_t i = 0; i < size; i += 3) {
        const auto byte = [&](std::size_t at) { return at < size ? std::uint32_t{bytes[at]} : 0U; };
        const std::uint32_t three = byte(i) << 16U | byte(i + 1) << 8U | byte(i + 2);
        text += digits[three >> 18U];
        text += digits[three >> 12U & 63U];
        text += i + 1 < size ? digits[three >> 6U & 63U] : '=';
        text += i + 2 < size ? digits[three & 63U] : '=';
    }
    return text;
}

} // namespace velm
