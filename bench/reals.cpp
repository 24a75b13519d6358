#include "bench/fortran_peer.h"
#include "bench/measuring.hpp"
#include "bench/model_values.hpp"
#include "record_output/real_rendering.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace velm::bench {
namespace {

/// With their texts they fit the second-level cache, and are too many for the processor to foresee their branches.
constexpr std::size_t value_count = 16'384;
constexpr std::size_t widest_text = 64; ///< of a single in full, which some peers write before they see it is too wide

using Values = std::vector<float>;
using RenderAll = std::function<void(char* text)>; ///< all values of a measurement, a field each

struct Renderer {
    const char* name;
    RenderAll render;
};

template <class Render>
RenderAll one_by_one(const Values& values, std::size_t width, Render render)
{
    return [&values, width, render](char* text) {
        for (const float value : values) {
            render(text, value);
            text += width;
        }
    };
}

RenderAll in_fortran(const Values& values, std::size_t width, const std::string& layout)
{
    return [&values, width, layout](char* text) {
        fortran_reals(values.data(), static_cast<std::int32_t>(value_count), static_cast<std::int32_t>(width),
                      layout.data(), static_cast<std::int32_t>(layout.size()), text);
    };
}

/// Each must say the same numbers, but for `unit` of the last place and a `relative` part: velm knows eight digits of
/// a value, others know all.
void require_agreement(const std::string& what, const std::vector<Renderer>& renderers, std::size_t width, double unit,
                       double relative)
{
    std::vector<char> ours(value_count * width + widest_text);
    std::vector<char> theirs(ours.size());
    renderers.front().render(ours.data());
    for (const Renderer& renderer : renderers) {
        renderer.render(theirs.data());
        for (std::size_t at = 0; at < value_count * width; at += width) {
            const std::string our(&ours[at], width);
            const std::string their(&theirs[at], width);
            const double number = std::strtod(our.c_str(), nullptr);
            const double difference = std::abs(std::strtod(their.c_str(), nullptr) - number);
            if ((our[0] == '*') != (their[0] == '*') || !(difference <= unit + std::abs(number) * relative)) {
                throw std::runtime_error(what + ": " + renderer.name + " renders '" + their + "', velm '" + our + "'");
            }
        }
    }
}

void measure(const std::string& what, int rounds, std::size_t width, const std::vector<Renderer>& renderers)
{
    constexpr double at_least = 0.02;
    std::vector<char> text(value_count * width + widest_text);
    for (int round = 0; round < rounds; ++round) {
        for (const Renderer& renderer : renderers) {
            double seconds = 0;
            std::size_t runs = 0;
            for (; seconds < at_least; ++runs) {
                seconds += seconds_of([&] { renderer.render(text.data()); });
            }
            tell(what, renderer.name, seconds / static_cast<double>(runs * value_count));
        }
    }
}

/// What does not fit its field becomes asterisks, as in a record.
template <std::size_t width, std::size_t decimals>
void by_to_chars(char* field, float value)
{
    char text[width];
    const auto [end, error] = std::to_chars(text, text + width, value, std::chars_format::fixed, decimals);
    const auto size = static_cast<std::size_t>(end - text);
    if (error != std::errc{}) {
        std::memset(field, '*', width);
        return;
    }
    std::memset(field, ' ', width - size);
    std::memcpy(field + (width - size), text, size);
}

template <std::size_t width, std::size_t decimals>
void measure_field(const std::string& shape, const std::string& input, int rounds, const Values& values)
{
    const std::string layout = std::string("(F").append(shape).append(")");
    const std::string percent = std::string("%").append(shape).append("f");
    const std::vector<Renderer> renderers = {
        {"velm", one_by_one(values, width, [](char* field, float v) { render_real_field<width, decimals>(field, v); })},
        {"snprintf", one_by_one(values, width,
                                [percent](char* field, float value) {
                                    if (std::snprintf(field, width + 1, percent.c_str(), double{value}) > int{width}) {
                                        std::memset(field, '*', width);
                                    }
                                })},
        {"to_chars", one_by_one(values, width, by_to_chars<width, decimals>)},
        {"Fortran", in_fortran(values, width, layout)}};
    require_agreement(layout, renderers, width, 1.0 / std::pow(10, decimals), 2e-6);
    measure(layout + " " + input, rounds, width, renderers);
}

/// Free-form reals, each in a slot of its own and ended by a blank, as the next value or line would end it. The
/// longest is "-1.234567E+12"; what velm writes behind a shorter one is overwritten by the next.
void measure_free(const std::string& input, int rounds, const Values& values)
{
    constexpr std::size_t slot = 14;
    const std::vector<Renderer> renderers = {
        {"velm", one_by_one(values, slot, [](char* text, float value) { *render_free_real(text, value) = ' '; })},
        {"snprintf", one_by_one(values, slot,
                                [](char* text, float value) {
                                    const bool point =
                                        value == 0 || (std::abs(value) >= 0.1F && std::abs(value) < 1e6F);
                                    std::snprintf(text, slot + 1, point ? "%#.6g " : "%.6E ", double{value});
                                })},
        {"to_chars", one_by_one(values, slot,
                                [](char* text, float value) {
                                    *std::to_chars(text, text + slot, value, std::chars_format::scientific, 6).ptr =
                                        ' ';
                                })},
        {"Fortran", in_fortran(values, slot, "(1PG14.6)")}};
    require_agreement("free", renderers, slot, 0, 1.1e-5);
    measure("free-form " + input, rounds, slot, renderers);
}

template <class Draw>
void measure_all(const std::string& input, int rounds, Draw draw, bool only_fitting)
{
    const auto below = [&](double limit) {
        Values values(value_count);
        std::ranges::generate(values, [&] {
            float value = draw();
            while (!std::isfinite(value) || (only_fitting && std::abs(value) >= limit)) {
                value = draw();
            }
            return value;
        });
        return values;
    };
    measure_field<15, 5>("15.5", input, rounds, below(1e8));
    measure_field<10, 4>("10.4", input, rounds, below(9e3));
    measure_field<14, 6>("14.6", input, rounds, below(9e5));
    measure_field<20, 4>("20.4", input, rounds, below(1e14));
    measure_field<15, 2>("15.2", input, rounds, below(9e10));
    measure_free(input, rounds, below(1e30));
}

} // namespace

void measure_reals(int rounds)
{
    constexpr std::array quantities{volume, length, depth, flow, concentration, load, fraction};
    ModelValues values(1);
    measure_all(
        "model values", rounds, [&] { return values.draw(quantities[values.below(quantities.size())]); }, true);
    measure_all(
        "random patterns", rounds, [&] { return std::bit_cast<float>(values.bits()); }, false);
}

} // namespace velm::bench
