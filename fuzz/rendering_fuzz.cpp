// Four bytes are a real: its text in every form is the one that exact arithmetic gives. Two more are a field of any
// width and decimals.

#include "fuzz/fuzz_bytes.hpp"
#include "record_output/field_rendering.hpp"
#include "tests/support/exact_decimal.hpp"
#include "tests/support/real_fields.hpp"

#include <bit>

using namespace velm;

namespace {

class Expected {
public:
    explicit Expected(std::uint32_t bits) : bits_(bits), word_(exact::not_finite(bits))
    {
        if (word_.empty()) {
            digits_ = exact::digits_of(bits & 0x7fffffffU);
        }
    }

    [[nodiscard]] std::string field(std::size_t width, std::size_t decimals) const
    {
        if (!word_.empty()) {
            return word_.size() > width ? std::string(width, '*') : std::string(width - word_.size(), ' ') + word_;
        }
        return exact::real_field(width, decimals, negative(), digits_);
    }
    [[nodiscard]] std::string free() const { return word_.empty() ? exact::free_real(negative(), digits_) : word_; }

private:
    [[nodiscard]] bool negative() const { return bits_ >> 31 != 0; }

    std::uint32_t bits_;
    std::string word_;
    exact::Digits digits_;
};

void check_any_field(const Expected& expected, float value, std::size_t width, std::size_t decimals)
{
    std::string text(width, '?');
    render_real_field_in_full(text.data(), width, decimals, value);
    expect(text == expected.field(width, decimals), "a field of any width and decimals is as computed exactly");
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
        const Expected expected(bits);
        for (const RealField& field : real_fields_in_use) {
            const std::string text = expected.field(field.width, field.decimals);
            expect(field.fast(value) == text, "the compiled field is as computed exactly");
            expect(field.in_full(value) == text, "the field rendered in full is as computed exactly");
        }
        const std::string free = expected.free();
        expect(free_real(value) == free, "the free form is as computed exactly");
        expect(shows_minus(value) == (free[0] == '-'), "a minus sign is foreseen");

        const std::size_t width = 1 + input.byte() % 20U;
        check_any_field(expected, value, width, input.byte() % width);
        check_integer(std::bit_cast<std::int32_t>(bits));
    }
    return 0;
}
