#include "session/real_text.hpp"

#include "session/shortest_decimal.hpp"

#include <array>
#include <bit>
#include <charconv>
#include <cstring>
#include <string_view>

namespace velm {
namespace {

char* put_bytes(char* to, std::uint64_t bytes)
{
    std::memcpy(to, &bytes, sizeof bytes);
    return to + sizeof bytes;
}

constexpr auto hexadecimal_bytes = [] {
    constexpr std::string_view digits = "0123456789abcdef";
    std::array<std::array<char, 2>, 256> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = {digits[i >> 4], digits[i & 15]};
    }
    return bytes;
}();

char* put_hexadecimal(char* to, std::uint32_t bits)
{
    for (unsigned shift = 32; shift != 0; to += 2) {
        shift -= 8;
        std::memcpy(to, hexadecimal_bytes[bits >> shift & 0xFFU].data(), 2);
    }
    return to;
}

/// Where the pieces of a decimal stand that has so many digits before the point, or so many zeros behind it.
struct Places {
    std::uint8_t digits; ///< the first of them
    std::uint8_t whole;  ///< of them before the point
    std::uint8_t point;
    std::uint8_t behind; ///< the digits behind the point, or all that are not zeros ahead of them
    std::uint8_t ends;   ///< where the text ends, less the number of digits
};

constexpr int most_zeros = 3; ///< behind the point: 2^-13 is 0.00012207031

/// By the number of digits before the point, less for zeros behind it.
constexpr auto places_by_whole = [] {
    std::array<Places, most_zeros + 9> places{};
    for (std::uint8_t i = 0; i < places.size(); ++i) {
        const auto byte = [](int number) { return static_cast<std::uint8_t>(number); };
        const int whole = i - most_zeros;
        places[i] = whole > 0 ? Places{0, byte(whole), byte(whole), byte(whole + 1), 1}
                              : Places{byte(2 - whole), 0, 1, byte(2 - whole), byte(2 - whole)};
    }
    return places;
}();

/// 0.0123 or 12.3 or 123: without branches too.
char* put_decimal(char* to, ShortestDecimal decimal)
{
    // nine digits: the first, which is 0 or 1, and eight
    const std::uint64_t first = decimal.digits >= eight_digit_limit ? 1 : 0;
    const std::uint64_t eight =
        detail::eight_digits(decimal.digits - static_cast<std::uint32_t>(first) * eight_digit_limit);
    constexpr std::uint64_t last_of_eight = std::uint64_t{1} << 56;
    const int leading_zeros = std::countr_zero(eight | first | last_of_eight) / 8;
    const std::uint64_t text = (eight << 8 * first | first) >> 8 * leading_zeros;
    const std::uint64_t ninth = (eight >> 56) * first;
    const int unused = std::countl_zero(text | ninth << 56 | 1) / 8; // zeros at the end of eight
    const int size = 8 - unused + (ninth != 0 ? 1 : 0);

    const int whole = 8 + static_cast<int>(first) - leading_zeros - decimal.decimals;
    const Places& places = places_by_whole[static_cast<std::size_t>(most_zeros + whole)];
    const std::uint64_t characters = text | detail::eight_zeros;
    std::memcpy(to, "0.000000", 8);
    put_bytes(to + places.digits, characters);
    put_bytes(to + places.behind, characters >> 4 * places.whole >> 4 * places.whole); // by 64 has no meaning
    to[places.ends + 8] = static_cast<char>('0' + ninth);
    to[places.point] = '.';
    return to + (size > places.whole ? places.ends + size : places.whole);
}

char* put_magnitude(char* to, std::uint32_t magnitude)
{
    if (has_shortest_decimal(magnitude)) {
        return put_decimal(to, shortest_decimal(magnitude));
    }
    if (magnitude == 0) {
        *to = '0';
        return to + 1;
    }
    return std::to_chars(to, to + real_room, std::bit_cast<float>(magnitude)).ptr;
}

} // namespace

char* put_real(char* to, float value) noexcept
{
    const auto bits = std::bit_cast<std::uint32_t>(value);
    const std::uint32_t magnitude = bits & single::magnitude_bits;
    to[0] = '"';
    to[1] = '-';
    to += 1 + (bits >> 31);
    to = put_magnitude(to, magnitude);
    *to++ = ' ';
    to = put_hexadecimal(to, bits);
    *to++ = '"';
    return to;
}

} // namespace velm
