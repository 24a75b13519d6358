// Single fields: reals with and without a layout, integers, texts.
#include "bench/model_values.hpp"
#include "bench/peers.h"
#include "bench/rendering.hpp"
#include "record_output/field_rendering.hpp"
#include "record_output/real_rendering.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fmt/compile.h>
#include <memory>
#include <stdexcept>

namespace velm::bench {
namespace {

constexpr std::size_t widest_text = 64; ///< of a single in full, which some peers write before they see it is too wide
constexpr auto count = static_cast<std::int32_t>(value_count);

/// The values of a measurement, shared by its methods.
template <class Value>
using Values = std::shared_ptr<const std::vector<Value>>;

/// One field each `width` characters by `render(field, value)`.
template <class Value, class Render>
RenderAll one_by_one(const Values<Value>& values, std::size_t width, Render render)
{
    return [=](char* text) {
        for (const Value& value : *values) {
            render(text, value);
            text += width;
        }
    };
}

/// What a peer has written into a field wider than it is becomes asterisks, as in a record.
template <std::size_t width>
void refuse_overflow(char* field, std::size_t written)
{
    if (written > width) {
        std::memset(field, '*', width);
    }
}

/// `written` characters to the right end of the field, from where to_chars has put them.
template <std::size_t width>
void pad(char* field, const char* text, const char* end)
{
    const auto size = static_cast<std::size_t>(end - text);
    std::memset(field, ' ', width - size);
    std::memcpy(field + (width - size), text, size);
}

std::vector<std::string> fields_of(const RenderAll& render, std::size_t width)
{
    std::vector<char> text(value_count * width + widest_text);
    render(text.data());
    std::vector<std::string> fields;
    for (std::size_t i = 0; i < value_count; ++i) {
        fields.emplace_back(text.data() + i * width, width);
    }
    return fields;
}

struct Method {
    const char* name;
    RenderAll render;
};

/// Each method must say the same numbers, but for `unit` of the last place and a `relative` part: velm knows eight
/// digits of a value, others know all.
void require_agreement(const std::string& what, const std::vector<Method>& methods, std::size_t width, double unit,
                       double relative)
{
    const std::vector<std::string> ours = fields_of(methods.front().render, width);
    for (const Method& method : methods) {
        const std::vector<std::string> theirs = fields_of(method.render, width);
        for (std::size_t i = 0; i < ours.size(); ++i) {
            const double number = std::strtod(ours[i].c_str(), nullptr);
            const double difference = std::abs(std::strtod(theirs[i].c_str(), nullptr) - number);
            const bool same_overflow = (ours[i][0] == '*') == (theirs[i][0] == '*');
            if (!same_overflow || !(difference <= unit + std::abs(number) * relative)) {
                throw std::runtime_error(what + ": " + method.name + " renders '" + theirs[i] + "', velm '" + ours[i] +
                                         "'");
            }
        }
    }
}

void add(const std::string& what, const std::string& input, std::size_t width, const std::vector<Method>& methods)
{
    for (const Method& method : methods) {
        add_measurement(what, input, method.name, value_count, value_count * width + widest_text, method.render);
    }
}

template <std::size_t width, std::size_t decimals, class Format>
void add_reals(const std::string& input, Values<float> values, Format format)
{
    const std::string what = "F" + std::to_string(width) + "." + std::to_string(decimals);
    const std::string percent = "%" + what.substr(1) + "f";
    const std::vector<Method> methods = {
        {"velm", one_by_one(values, width, [](char* field, float v) { render_real_field<width, decimals>(field, v); })},
        {"snprintf", one_by_one(values, width,
                                [percent](char* field, float value) {
                                    const int written = std::snprintf(field, width + 1, percent.c_str(), double{value});
                                    refuse_overflow<width>(field, static_cast<std::size_t>(written));
                                })},
        {"to_chars", one_by_one(values, width,
                                [](char* field, float value) {
                                    char text[width];
                                    const auto [end, error] =
                                        std::to_chars(text, text + width, value, std::chars_format::fixed, decimals);
                                    error == std::errc{} ? pad<width>(field, text, end)
                                                         : refuse_overflow<width>(field, width + 1);
                                })},
        {"fmt", one_by_one(values, width,
                           [format](char* field, float value) {
                               const char* end = fmt::format_to(field, format, value);
                               refuse_overflow<width>(field, static_cast<std::size_t>(end - field));
                           })},
        {"Fortran", [values](char* text) { fortran_reals(values->data(), count, width, decimals, text); }}};
    require_agreement(what, methods, width, 1.0 / std::pow(10, decimals), 2e-6);
    add(what, input, width, methods);
}

/// Free-form reals, each in a slot of its own and ended by a blank, as the next value or line would end it. The
/// longest is "-1.234567E+12"; what velm writes behind a shorter one is overwritten by the next.
constexpr std::size_t free_slot = 14;

/// Digits behind the point of six significant ones, for magnitudes from 0.1 up to 999,999.
int places(float value)
{
    constexpr std::array bounds{1.F, 10.F, 100.F, 1000.F, 10'000.F, 100'000.F};
    const float magnitude = std::abs(value);
    return 6 - static_cast<int>(std::ranges::upper_bound(bounds, magnitude) - bounds.begin());
}

void add_free(const std::string& what, const std::string& input, const Values<float>& values, bool has_point)
{
    const char* const percent = has_point ? "%#.6g " : "%.6E ";
    const auto form = has_point ? std::chars_format::fixed : std::chars_format::scientific;
    const std::vector<Method> methods = {
        {"velm", one_by_one(values, free_slot, [](char* slot, float value) { *render_free_real(slot, value) = ' '; })},
        {"snprintf", one_by_one(values, free_slot,
                                [percent](char* slot, float value) {
                                    std::snprintf(slot, free_slot + 1, percent, double{value});
                                })},
        {"to_chars", one_by_one(values, free_slot,
                                [form, has_point](char* slot, float value) {
                                    const int precision = has_point ? places(value) : 6;
                                    *std::to_chars(slot, slot + free_slot, value, form, precision).ptr = ' ';
                                })},
        {"fmt",
         has_point
             ? one_by_one(values, free_slot,
                          [](char* slot, float value) { *fmt::format_to(slot, FMT_COMPILE("{:#.6g}"), value) = ' '; })
             : one_by_one(values, free_slot,
                          [](char* slot, float value) { *fmt::format_to(slot, FMT_COMPILE("{:.6E}"), value) = ' '; })},
        {"Fortran", [values](char* text) { fortran_free_reals(values->data(), count, text); }}};
    require_agreement(what, methods, free_slot, 0, 1.1e-5);
    add(what, input, free_slot, methods);
}

void add_integers(const std::string& input, const Values<std::int32_t>& values)
{
    constexpr std::size_t width = 5;
    const std::vector<Method> methods = {
        {"velm", one_by_one(values, width, [](char* field, std::int32_t v) { render_integer_field<width>(field, v); })},
        {"snprintf", one_by_one(values, width,
                                [](char* field, std::int32_t value) {
                                    const int written = std::snprintf(field, width + 1, "%5d", value);
                                    refuse_overflow<width>(field, static_cast<std::size_t>(written));
                                })},
        {"to_chars", one_by_one(values, width,
                                [](char* field, std::int32_t value) {
                                    char text[width];
                                    const auto [end, error] = std::to_chars(text, text + width, value);
                                    error == std::errc{} ? pad<width>(field, text, end)
                                                         : refuse_overflow<width>(field, width + 1);
                                })},
        {"fmt", one_by_one(values, width,
                           [](char* field, std::int32_t value) {
                               const char* end = fmt::format_to(field, FMT_COMPILE("{:5}"), value);
                               refuse_overflow<width>(field, static_cast<std::size_t>(end - field));
                           })},
        {"Fortran", [values](char* text) { fortran_integers(values->data(), count, width, text); }}};
    require_agreement("I5", methods, width, 0, 0);
    add("I5", input, width, methods);
}

void add_texts()
{
    constexpr std::size_t width = 30;
    using Text = std::array<char, width>;
    auto texts = std::make_shared<std::vector<Text>>(value_count);
    for (std::size_t i = 0; i < value_count; ++i) {
        std::snprintf((*texts)[i].data(), width, "Inflow of river reach %7zu", i);
    }
    const Values<Text> values = texts;
    add("A30", "model", width,
        {{"velm", one_by_one(values, width, [](char* field, const Text& v) { render_text_field<width>(field, v); })},
         {"snprintf",
          one_by_one(values, width,
                     [](char* field, const Text& value) { std::snprintf(field, width + 1, "%30.30s", value.data()); })},
         {"fmt", one_by_one(values, width,
                            [](char* field, const Text& value) {
                                fmt::format_to(field, FMT_COMPILE("{:>30}"), fmt::string_view(value.data(), width));
                            })},
         {"Fortran", [values](char* text) {
              fortran_texts(values->front().data(), count, static_cast<std::int32_t>(width), text);
          }}});
}

/// The first value_count values of `all` that `fits` accepts; `all` is drawn again and again until there are enough.
template <class Draw, class Fits>
Values<float> chosen(Draw draw, Fits fits)
{
    auto values = std::make_shared<std::vector<float>>();
    while (values->size() < value_count) {
        const float value = draw();
        if (fits(value)) {
            values->push_back(value);
        }
    }
    return values;
}

template <class Draw>
void add_all_reals(const std::string& input, Draw draw, bool only_fitting)
{
    const auto below = [only_fitting](double limit) {
        return [=](float value) { return std::isfinite(value) && (!only_fitting || std::abs(value) < limit); };
    };
    const auto has_point = [](float value) {
        return value == 0 || (std::abs(value) >= 0.1F && std::abs(value) < 999'999.F);
    };
    const auto has_exponent = [=](float value) { return std::isfinite(value) && !has_point(value); };
    add_reals<15, 5>(input, chosen(draw, below(1e8)), FMT_COMPILE("{:15.5f}"));
    add_reals<10, 4>(input, chosen(draw, below(9e3)), FMT_COMPILE("{:10.4f}"));
    add_reals<14, 6>(input, chosen(draw, below(9e5)), FMT_COMPILE("{:14.6f}"));
    add_reals<20, 4>(input, chosen(draw, below(1e14)), FMT_COMPILE("{:20.4f}"));
    add_reals<15, 2>(input, chosen(draw, below(9e10)), FMT_COMPILE("{:15.2f}"));
    add_free("free with a point", input, chosen(draw, has_point), true);
    add_free("free with an exponent", input, chosen(draw, has_exponent), false);
}

} // namespace

void add_fields(const std::vector<std::vector<float>>& kinds)
{
    const std::vector<float> mixed = mixed_values(kinds, 100'003); // a prime, so that a second pass differs
    std::size_t next = 0;
    add_all_reals(
        "model", [&] { return mixed[next++ % mixed.size()]; }, true);
    ModelValues random(6);
    add_all_reals(
        "bits", [&] { return std::bit_cast<float>(random.bits()); }, false);

    auto numbers = std::make_shared<std::vector<std::int32_t>>(value_count);
    std::ranges::generate(*numbers, [&] { return static_cast<std::int32_t>(random.draw({1, 99'999})); });
    add_integers("model", numbers);
    auto patterns = std::make_shared<std::vector<std::int32_t>>(value_count);
    std::ranges::generate(*patterns, [&] { return static_cast<std::int32_t>(random.bits()); });
    add_integers("bits", patterns);
    add_texts();
}

} // namespace velm::bench
