// Four bytes are a real: its text in every form is the one that exact arithmetic gives. Two more are a field of any
// width and decimals.

#include "fuzz/fuzz_bytes.hpp"
#include "record_output/field_rendering.hpp"
#include "tests/support/exact_decimal.hpp"
#include "tests/support/real_fields.hpp"

#include <bit>

using namespace velm;

namespace {

void check_any_field(std::uint32_t bits, const exact::Digits& digits, std::size_t width, std::size_t decimals)
{
    std::string text(width, '?');
    render_real_field_in_full(text.data(), width, decimals, std::bit_cast<float>(bits));
    expect(text == exact::real_field(width, decimals, bits, digits).view(),
           "a field of any width and decimals is as computed exactly");
}

void check_integer(std::int32_t value)
{
    char text[integer_room];
    const std::string_view shown(text, static_cast<std::size_t>(render_integer(text, value) - text));
    expect(shown == std::to_string(value), "an integer is as the library shows it");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    FuzzBytes input(bytes, size);
    while (!input.empty()) {
        const auto bits = input.number<std::uint32_t>();
        const auto value = std::bit_cast<float>(bits);
        const bool finite = exact::not_finite(bits).empty();
        const exact::Digits digits = finite ? exact::digits_of(bits & 0x7fffffffU) : exact::Digits{};
        for (const RealField& field : real_fields_in_use) {
            const exact::Text text = exact::real_field(field.width, field.decimals, bits, digits);
            expect(field.fast(value) == text.view(), "the compiled field is as computed exactly");
            expect(field.in_full(value) == text.view(), "the field rendered in full is as computed exactly");
        }
        const exact::Text free = exact::free_real(bits, digits);
        expect(free_real(value) == free.view(), "the free form is as computed exactly");
        expect(shows_minus(value) == (free.view()[0] == '-'), "a minus sign is foreseen");

        const std::size_t width = 1 + input.byte() % 20U;
        check_any_field(bits, digits, width, input.byte() % width);
        check_integer(std::bit_cast<std::int32_t>(bits));
    }
    return 0;
}
