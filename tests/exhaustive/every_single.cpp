// Compares the digits of every single-precision magnitude, and the texts of every n-th pattern, with exact arithmetic.
//
//     every_single [n]        n is 61 when it is not given; 1 takes every pattern
//
// Exact means counting: the singles of one binary exponent lie evenly spaced, and the spacing, in units of the eighth
// digit, is a whole number of 2^a / 5^b or 5^b / 2^a. It is added up as whole part and remainder, without a product.

#include "record_output/decimal_digits.hpp"
#include "tests/support/exact_decimal.hpp"
#include "tests/support/real_fields.hpp"

#include <atomic>
#include <bit>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <mutex>
#include <thread>

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
    std::uint64_t patterns = 0;
    std::uint64_t differences = 0;
    long double nearest_miss = 1; ///< distance below a whole number of what is cut to one
};

/// Magnitudes from `first` to before `last`, of which all have the spacing 2^binary and the same number of bits.
void compare_digits(std::uint32_t first, std::uint32_t last, std::uint32_t significand, int binary, Tally& tally)
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
        const DecimalDigits got = decimal_digits(magnitude);
        if (got.digits != (nine ? whole / 10 : whole) || got.exponent != (nine ? k + 1 : k)) {
            ++tally.differences;
            std::printf("pattern %08x: digits %u exponent %d, exactly %u at %d\n", magnitude, got.digits, got.exponent,
                        whole, k);
        }
        if (value.remainder != 0) {
            const long double miss =
                static_cast<long double>(value.divisor - value.remainder) / static_cast<long double>(value.divisor);
            tally.nearest_miss = std::min(tally.nearest_miss, miss);
        }
        ++tally.patterns;
    }
}

/// One stretch of magnitudes: those of one biased exponent, or the subnormal ones of one bit length.
void compare_stretch(int stretch, Tally& tally)
{
    if (stretch < 23) {
        const std::uint32_t first = 1U << stretch;
        compare_digits(first, 2 * first, first, -149, tally);
    } else {
        const int biased = stretch - 22;
        const std::uint32_t first = static_cast<std::uint32_t>(biased) << 23;
        compare_digits(first, first + 0x800000U, 0x800000U, biased - 150, tally);
    }
}

void compare_texts(std::uint32_t bits, Tally& tally)
{
    if ((bits & 0x7fffffffU) >= 0x7f800000U) {
        return;
    }
    const auto value = std::bit_cast<float>(bits);
    const exact::Digits digits = exact::digits_of(bits & 0x7fffffffU);
    const bool negative = bits >> 31 != 0;
    bool same = free_real(value) == exact::free_real(negative, digits);
    for (const RealField& field : real_fields_in_use) {
        same = same && field.fast(value) == exact::real_field(field.width, field.decimals, negative, digits);
    }
    if (!same) {
        ++tally.differences;
        std::printf("pattern %08x: a text differs\n", bits);
    }
    ++tally.patterns;
}

/// Shares the numbers from 0 to before `count` among two threads, hands out one after the other, and adds the tallies.
template <class Work>
Tally on_two_threads(std::uint64_t count, Work work)
{
    std::atomic<std::uint64_t> next = 0;
    std::mutex adding;
    Tally total;
    auto run = [&] {
        Tally own;
        for (std::uint64_t number = next++; number < count; number = next++) {
            work(number, own);
        }
        const std::lock_guard lock(adding);
        total.patterns += own.patterns;
        total.differences += own.differences;
        total.nearest_miss = std::min(total.nearest_miss, own.nearest_miss);
    };
    std::thread other(run);
    run();
    other.join();
    return total;
}

double seconds_since(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

} // namespace

int main(int argument_count, char** arguments)
{
    const std::uint64_t every = argument_count > 1 ? std::strtoull(arguments[1], nullptr, 10) : 61;
    if (every == 0) {
        std::fputs("usage: every_single [n]: compares the texts of every n-th pattern, n from 1 up\n", stderr);
        return 2;
    }
    auto start = std::chrono::steady_clock::now();
    const Tally digits = on_two_threads(
        23 + 254, [](std::uint64_t stretch, Tally& tally) { compare_stretch(static_cast<int>(stretch), tally); });
    const bool zero = decimal_digits(0).digits == 0 && decimal_digits(0).exponent == 0;
    std::printf("digits: %llu magnitudes and zero, %llu differ; nearest miss of a whole number 2^%.2Lf; %.0f s\n",
                static_cast<unsigned long long>(digits.patterns), static_cast<unsigned long long>(digits.differences),
                std::log2(digits.nearest_miss), seconds_since(start));

    start = std::chrono::steady_clock::now();
    constexpr std::uint64_t chunk = 1 << 16;
    const std::uint64_t count = ((std::uint64_t{1} << 32) + every - 1) / every;
    const Tally texts = on_two_threads((count + chunk - 1) / chunk, [&](std::uint64_t number, Tally& tally) {
        for (std::uint64_t i = number * chunk; i < std::min((number + 1) * chunk, count); ++i) {
            compare_texts(static_cast<std::uint32_t>(i * every), tally);
        }
    });
    std::printf(
        "texts: every %llu. pattern, %llu finite ones in ten descriptors and the free form, %llu differ; %.0f s\n",
        static_cast<unsigned long long>(every), static_cast<unsigned long long>(texts.patterns),
        static_cast<unsigned long long>(texts.differences), seconds_since(start));
    return zero && digits.differences + texts.differences == 0 && digits.patterns == 0x7f7fffffU ? 0 : 1;
}
