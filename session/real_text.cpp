#include "session/real_text.hpp"

#include "session/line_text.hpp"
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
    std::uint8_t point;
    std::uint8_t behind; ///< the digits behind the point, or all that are not zeros ahead of them
    std::uint8_t passed; ///< bits of the digits that are before the point, eight each
    std::uint8_t ends;   ///< where the text ends, less the number of digits
};

constexpr int most_zeros = 3; ///< behind the point: 2^-13 is 0.00012207031
constexpr int most_whole = 7; ///< below 2^23, as all that is not whole

/// By the number of digits before the point, less for zeros behind it.
constexpr auto places_by_whole = [] {
    std::array<Places, most_zeros + most_whole + 1> places{};
    for (int whole = -most_zeros; whole <= most_whole; ++whole) {
        const auto byte = [](int number) { return static_cast<std::uint8_t>(number); };
        places[static_cast<std::size_t>(most_zeros + whole)] =
            whole > 0 ? Places{0, byte(whole), byte(whole + 1), byte(8 * whole), 1}
                      : Places{byte(2 - whole), 1, byte(2 - whole), 0, byte(2 - whole)};
    }
    return places;
}();

/// 0.0123 or 12.3, but no whole number: without branches too.
char* put_decimal(char* to, ShortestDecimal decimal)
{
    constexpr std::uint64_t last_of_eight = std::uint64_t{1} << 56; // spares a test for 0
    const std::uint64_t tens = detail::eight_digits(decimal.tens);
    const int leading_zeros = std::countr_zero(tens | last_of_eight) / 8;
    const int size = 9 - leading_zeros;
    const int zeros_at_end = (std::countl_zero(tens | 1) / 8 + 1) & -static_cast<int>(decimal.ones == 0);

    const Places& places = places_by_whole[static_cast<std::size_t>(most_zeros + size - decimal.decimals)];
    const std::uint64_t digits = (tens | detail::eight_zeros) >> 8 * leading_zeros;
    std::memcpy(to, "0.000000", 8);
    put_bytes(to + places.digits, digits);
    put_bytes(to + places.behind, digits >> places.passed);
    to[places.point] = '.';
    to += places.ends + size;
    to[-1] = static_cast<char>('0' + decimal.ones);
    return to - zeros_at_end;
}

constexpr float beyond_all_wholes = 1 << 24; ///< below, all whole numbers are singles

char* put_magnitude(char* to, std::uint32_t magnitude)
{
    const auto value = std::bit_cast<float>(magnitude);
    if (value < beyond_all_wholes && value == static_cast<float>(static_cast<int>(value))) {
        return put_whole(to, static_cast<std::uint32_t>(value));
    }
    if (has_shortest_decimal(magnitude)) {
        return put_decimal(to, shortest_decimal(magnitude));
    }
    return std::to_chars(to, to + real_room, value).ptr;
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
