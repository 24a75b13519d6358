#include "input_file/fields/real_text.hpp"

#include "model/words.hpp"
#include "record_output/real_rendering.hpp"

#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <system_error>

namespace velm {
namespace {

constexpr std::size_t widest_field = 20;

constexpr bool is_digit(char character)
{
    return character >= '0' && character <= '9';
}

/// Takes a number in any usual way of writing it: 12, -1.5, .5, 1.5e3, 1.5D+03.
std::errc read_number(std::string_view text, float& value)
{
    const std::string_view digits = text.substr(text.starts_with('-') || text.starts_with('+') ? 1 : 0);
    if (digits.empty() || !(is_digit(digits.front()) || digits.front() == '.')) { // words such as INF are none
        return std::errc::invalid_argument;
    }
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.front() == '+' ? digits.data() : text.data(), end, value);
    if (stop == end) {
        return error;
    }
    if (*stop != 'D' && *stop != 'd') {
        return std::errc::invalid_argument;
    }
    std::string with_e(text);
    with_e[static_cast<std::size_t>(stop - text.data())] = 'e';
    return read_number(with_e, value);
}

void render_field(char* field, std::size_t width, std::size_t decimals, float value)
{
    switch (width * 10 + decimals) {
    case 104: return render_real_field<10, 4>(field, value);
    case 146: return render_real_field<14, 6>(field, value);
    case 155: return render_real_field<15, 5>(field, value);
    case 204: return render_real_field<20, 4>(field, value);
    default: return render_real_field_in_full(field, width, decimals, value);
    }
}

bool is_field_text_of(float value, std::string_view text, std::size_t decimals)
{
    std::array<char, widest_field> field; // NOLINT(cppcoreguidelines-pro-type-member-init): filled below
    render_field(field.data(), text.size(), decimals, value);
    return std::memcmp(field.data(), text.data(), text.size()) == 0;
}

bool is_row_text_of(float value, std::string_view text)
{
    std::array<char, free_real_room> row; // NOLINT(cppcoreguidelines-pro-type-member-init): filled below
    const char* const end = render_free_real(row.data(), value);
    return static_cast<std::size_t>(end - row.data()) == text.size() &&
           std::memcmp(row.data(), text.data(), text.size()) == 0;
}

/// The magnitude that lies `steps` representable values further from zero.
float stepped(float value, int steps)
{
    const auto bits = std::bit_cast<std::uint32_t>(value);
    const std::int64_t magnitude = std::int64_t{bits & single::magnitude_bits} + steps;
    if (magnitude < 0 || magnitude >= std::int64_t{single::infinity}) {
        return value;
    }
    return std::bit_cast<float>((bits & single::sign_bit) | static_cast<std::uint32_t>(magnitude));
}

/// The value that `is_text_of` says yes to, near the number that `text` says.
///
/// A text stands for an interval of values: around the number that it spells when digits were rounded away, from that
/// number up when all eight digits are shown, for they are cut. So the nearest value may lie just outside, and the one
/// beside it within: 0.10000001 of single precision is 0.100000001490116, but the value that an export shows so may be
/// its neighbour.
template <class IsTextOf>
RealText value_of(std::string_view text, const IsTextOf& is_text_of)
{
    float nearest = 0;
    const std::errc error = read_number(text, nearest);
    if (error == std::errc::result_out_of_range) {
        return {RealTextKind::no_single};
    }
    if (error != std::errc()) {
        const std::string_view word = text.substr(text.starts_with('-') ? 1 : 0);
        const bool not_finite = word == "INF" || text == "NaN";
        return {not_finite ? RealTextKind::not_finite : RealTextKind::no_number};
    }
    nearest = nearest == 0 ? 0 : nearest; // without a sign
    if (is_text_of(nearest)) [[likely]] {
        return {RealTextKind::exact, nearest};
    }
    for (const int steps : {-1, 1, -2, 2}) {
        if (const float neighbour = stepped(nearest, steps); is_text_of(neighbour)) {
            return {RealTextKind::exact, neighbour};
        }
    }
    return {RealTextKind::other_form, nearest};
}

} // namespace

RealText real_in_field(std::string_view text, std::size_t decimals)
{
    const std::string_view number = without_blanks(text);
    if (number.empty()) {
        return {RealTextKind::no_number};
    }
    if (text.find_first_not_of('*') == std::string_view::npos) {
        return {RealTextKind::asterisks};
    }
    return value_of(number, [&](float value) { return is_field_text_of(value, text, decimals); });
}

RealText real_in_row(std::string_view text)
{
    return value_of(text, [&](float value) { return is_row_text_of(value, text); });
}

std::string field_text(float value, std::size_t width, std::size_t decimals)
{
    std::string text(width, ' ');
    render_field(text.data(), width, decimals, value);
    return text;
}

std::string row_text(float value)
{
    std::array<char, free_real_room> row{};
    return {row.data(), render_free_real(row.data(), value)};
}

} // namespace velm
