// Compares digits and texts of every single-precision pattern with exact arithmetic, and tells of each that differs.
//
//     every_single [n]        with the texts of every n-th magnitude only; of each when n is not given
//
// Exact means counting: the singles of one binary exponent lie evenly spaced, and the spacing, in units of the eighth
// digit, is a whole number of 2^a / 5^b or 5^b / 2^a. It is added up as whole part and remainder, without a product.

#include "record_output/decimal_digits.hpp"
#include "tests/support/exact_decimal.hpp"
#include "tests/support/real_fields.hpp"

#include <array>
#include <atomic>
#include <bit>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <mutex>
#include <thread>
#include <unistd.h>

namespace {

using namespace velm;
__extension__ using Wide = unsigned __int128;

/// A number that is counted up: whole + remainder / divisor.
struct Counted {
    Wide whole;
    Wide remainder;
    Wide divisor;

    void add(const Counted& step)
    {
        whole += step.whole;
        remainder += step.remainder;
        if (remainder >= divisor) {
            remainder -= divisor;
            ++whole;
        }
    }
};

/// 2^binary * 10^decimal; divisor and whole part stay below 2^127 for all that a single needs.
Counted power(int binary, int decimal)
{
    Wide fives = 1;
    for (int i = 0; i < std::abs(decimal); ++i) {
        fives *= 5;
    }
    const int twos = binary + decimal;
    const Wide two_power = Wide{1} << std::abs(twos);
    const Wide numerator = (decimal > 0 ? fives : 1) * (twos > 0 ? two_power : 1);
    const Wide divisor = (decimal < 0 ? fives : 1) * (twos < 0 ? two_power : 1);
    return {numerator / divisor, numerator % divisor, divisor};
}

struct Tally {
    std::uint64_t magnitudes = 0;
    std::uint64_t texts = 0;
    std::uint64_t differences = 0;
    long double nearest_miss = 1; ///< distance below a whole number of what is cut to one
};

template <class... Words>
void tell(std::uint32_t bits, const char* format, Words... words)
{
    std::printf("pattern %08x: ", bits);
    std::printf(format, words...);
    std::putchar('\n');
}

/// In all ten descriptors and the free form.
void compare_texts(std::uint32_t bits, const exact::Digits& digits, Tally& tally)
{
    const auto value = std::bit_cast<float>(bits);
    std::array<char, 32> text{};
    for (const RealField& field : real_fields_in_use) {
        field.compiled(text.data(), value);
        if (std::string_view(text.data(), field.width) !=
            exact::real_field(field.width, field.decimals, bits, digits).view()) {
            ++tally.differences;
            tell(bits, "%.*s is '%.20s'", static_cast<int>(field.name.size()), field.name.data(), text.data());
        }
    }
    const char* const end = render_free_real(text.data(), value);
    if (std::string_view(text.data(), static_cast<std::size_t>(end - text.data())) !=
        exact::free_real(bits, digits).view()) {
        ++tally.differences;
        tell(bits, "the free form is '%.20s'", text.data());
    }
    tally.texts += std::size(real_fields_in_use) + 1;
}

void compare_texts_of_both_signs(std::uint32_t magnitude, const exact::Digits& digits, Tally& tally)
{
    compare_texts(magnitude, digits, tally);
    compare_texts(magnitude | 0x80000000U, digits, tally);
}

/// Magnitudes from `first` to before `last`, of which all have the spacing 2^binary and the same number of bits.
void compare(std::uint32_t first, std::uint32_t last, std::uint32_t significand, int binary, std::uint32_t every,
             Tally& tally)
{
    // k is where the first value has its first digit: found by trying, from the estimate downwards
    int k = static_cast<int>(std::floor((std::log2(significand) + binary) * 0.30103)) + 2;
    Counted step{};
    Counted value{};
    do {
        --k;
        step = power(binary, 8 - k);
        value = {0, 0, step.divisor};
        for (int bit = 31; bit >= 0; --bit) {
            value.add(Counted(value));
            if ((significand >> bit & 1U) != 0) {
                value.add(step);
            }
        }
    } while (value.whole < 10'000'000);
    for (std::uint32_t magnitude = first; magnitude < last; ++magnitude, value.add(step)) {
        const auto whole = static_cast<std::uint32_t>(value.whole);
        const bool nine = whole >= 100'000'000;
        const exact::Digits digits{nine ? whole / 10 : whole, nine ? k + 1 : k};
        const DecimalDigits got = decimal_digits(magnitude);
        if (got.digits != digits.eight || got.exponent != digits.k) {
            ++tally.differences;
            tell(magnitude, "digits %u exponent %d, exactly %u at %d", got.digits, got.exponent, whole, k);
        }
        if (magnitude % every == 0) {
            compare_texts_of_both_signs(magnitude, digits, tally);
        }
        if (value.remainder != 0) {
            const long double miss =
                static_cast<long double>(value.divisor - value.remainder) / static_cast<long double>(value.divisor);
            tally.nearest_miss = std::min(tally.nearest_miss, miss);
        }
        ++tally.magnitudes;
    }
}

constexpr std::uint64_t subnormal_stretches = 23;
constexpr std::uint64_t stretches = subnormal_stretches + 255;

/// One stretch of magnitudes: those of one biased exponent, or the subnormal ones of one bit length.
void compare_stretch(std::uint64_t stretch, std::uint32_t every, Tally& tally)
{
    if (stretch < subnormal_stretches) {
        const std::uint32_t first = 1U << stretch;
        return compare(first, 2 * first, first, -149, every, tally);
    }
    const std::uint64_t biased = stretch - subnormal_stretches + 1;
    const auto first = static_cast<std::uint32_t>(biased << 23);
    if (biased < 255) {
        return compare(first, first + 0x800000U, 0x800000U, static_cast<int>(biased) - 150, every, tally);
    }
    for (std::uint32_t magnitude = first; magnitude <= 0x7fffffffU; magnitude += every) { // what is not finite
        compare_texts_of_both_signs(magnitude, {}, tally);
    }
}

/// Two threads that take one stretch after the other, and tell of their progress where somebody reads along.
Tally compare_all(std::uint32_t every)
{
    std::atomic<std::uint64_t> next = 0;
    std::mutex adding;
    Tally total;
    const bool watched = isatty(STDERR_FILENO) != 0;
    auto run = [&] {
        for (std::uint64_t stretch = next++; stretch < stretches; stretch = next++) {
            Tally own;
            compare_stretch(stretch, every, own);
            const std::lock_guard lock(adding);
            total.magnitudes += own.magnitudes;
            total.texts += own.texts;
            total.differences += own.differences;
            total.nearest_miss = std::min(total.nearest_miss, own.nearest_miss);
            if (watched) {
                std::fprintf(stderr, "\r%.2f of 2.14 thousand million magnitudes",
                             static_cast<double>(total.magnitudes) / 1e9);
            }
        }
    };
    std::thread other(run);
    run();
    other.join();
    std::fputs(watched ? "\n" : "", stderr);
    return total;
}

} // namespace

int main(int argument_count, char** arguments)
{
    const unsigned long every = argument_count > 1 ? std::strtoul(arguments[1], nullptr, 10) : 1;
    if (argument_count > 2 || every < 1 || every > 0x7fffffffU) {
        std::fputs("Usage: every_single [n]: compares the texts of every n-th magnitude, n from 1 up\n", stderr);
        return 2;
    }
    const auto start = std::chrono::steady_clock::now();
    Tally tally = compare_all(static_cast<std::uint32_t>(every));
    tally.differences += decimal_digits(0).digits == 0 && decimal_digits(0).exponent == 0 ? 0 : 1;
    compare_texts_of_both_signs(0, {}, tally);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    std::printf(
        "%llu magnitudes and zero, %llu texts, %llu differences; nearest miss of a whole number 2^%.2Lf; %.0f s\n",
        static_cast<unsigned long long>(tally.magnitudes), static_cast<unsigned long long>(tally.texts),
        static_cast<unsigned long long>(tally.differences), std::log2(tally.nearest_miss), taken.count());
    return tally.differences == 0 && tally.magnitudes == 0x7f7fffffU ? 0 : 1;
}
