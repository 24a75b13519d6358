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
constexpr int most_whole = 7; ///< what is not whole is below 2^23

/// By the number of digits before the point, less for zeros behind it.
constexpr auto places_by_whole = [] {
    std::array<Places, most_zeros + most_whole + 1> places{};
    int whole = -most_zeros;
    for (Places& place : places) {
        const auto byte = [](int number) { return static_cast<std::uint8_t>(number); };
        place = whole > 0 ? Places{0, byte(whole), byte(whole + 1), byte(8 * whole), 1}
                          : Places{byte(2 - whole), 1, byte(2 - whole), 0, byte(2 - whole)};
        ++whole;
    }
    return places;
}();

/// 0.0123 or 12.3, but no whole number. Without branches too: the digits are put where those before the point belong,
/// then once more where those behind it do.
char* put_decimal(char* to, ShortestDecimal decimal)
{
    constexpr std::uint64_t last_of_eight = std::uint64_t{1} << 56; // spares a test for 0
    const std::uint64_t tens = detail::eight_digits(decimal.tens);
    const int leading_zeros = std::countr_zero(tens | last_of_eight) / 8;
    const int size = 9 - leading_zeros;
    const int zeros_at_end = (std::countl_zero(tens | 1) / 8 + 1) & (decimal.ones == 0 ? ~0 : 0);

    const Places& places = places_by_whole[static_cast<std::size_t>(most_zeros + size - decimal.decimals)];
    const std::uint64_t digits = (tens | detail::eight_zeros) >> 8 * leading_zeros;
    std::memcpy(to, "0.000000", 8);
    const std::uint64_t behind = digits >> places.passed;
    std::memcpy(to + places.digits, &digits, 8);
    std::memcpy(to + places.behind, &behind, 8);
    to[places.point] = '.';
    to += places.ends + size;
    to[-1] = static_cast<char>('0' + decimal.ones);
    return to - zeros_at_end;
}

/// Asks no question of the value as a number that a processor set to take small values for zero could answer wrongly.
char* put_magnitude(char* to, std::uint32_t magnitude)
{
    const auto value = std::bit_cast<float>(magnitude);
    if (!has_shortest_decimal(magnitude)) {
        *to = '0';
        return magnitude == 0 ? to + 1 : std::to_chars(to, to + real_room, value).ptr;
    }
    const auto whole = static_cast<std::int32_t>(value);
    return static_cast<float>(whole) == value ? put_whole(to, static_cast<std::uint32_t>(whole))
                                              : put_decimal(to, shortest_decimal(magnitude));
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
