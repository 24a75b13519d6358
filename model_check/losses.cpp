#include "model_check/losses.hpp"

#include "model/items.hpp"
#include "model/real_in_words.hpp"
#include "model/words.hpp"
#include "model_check/loss_rules.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>
#include <tuple>
#include <utility>

namespace velm {

namespace {

enum class Measure { part, days, fraction };

/// In what people think of a difference at that address.
Measure measure_of(const Address& address)
{
    if (address.column == "time") {
        return Measure::days;
    }
    Measure measure = Measure::part;
    for_each_table([&](TableId /*id*/, const auto& table) {
        for (const auto& column : table.columns) {
            if (table.name == address.table && column.name == address.column) {
                measure = column.unit == "days"           ? Measure::days
                          : column.rule == Rule::fraction ? Measure::fraction
                                                          : Measure::part;
            }
        }
    });
    return measure;
}

/// To three digits: "0.00012".
std::string in_three_digits(double number)
{
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::general, 3);
    return {text.data(), end.ptr};
}

bool is_worse(const Loss& one, const Loss& other)
{
    return std::tie(other.relative, one.address.table, one.address.numbers) <
           std::tie(one.relative, other.address.table, other.address.numbers);
}

} // namespace

std::string Loss::in_words() const
{
    const Measure measure = measure_of(address);
    const double difference = relative * std::abs(double{value});
    return real_in_words(value) + " is written " + text + ", off by " +
           (measure == Measure::part ? in_three_digits(relative * 100) + " %"
                                     : in_three_digits(difference) + (measure == Measure::days ? " days" : ""));
}

std::string Loss::remedy() const
{
    switch (measure_of(address)) {
    case Measure::part: return {};
    case Measure::days:
        return address.table == "model" ? "give it with fewer decimals"
                                        : "give a time of fewer digits, or count the days from a later start";
    case Measure::fraction: break;
    }
    return "give fractions of fewer decimals that together make what is meant";
}

void LossCount::see(const FieldText& field)
{
    const Address address = types_.in_model(field.address);
    const DatumValue value = value_of(model_, address);
    if (value.text != nullptr) {
        compare(address, field.text, *value.text);
        return;
    }
    if (value.real != nullptr && field.text.find('*') == std::string_view::npos) {
        ++losses_.reals;
        compare(address, without_blanks(field.text), *value.real);
        *value.real = field.real;
    }
}

void LossCount::compare(const Address& address, std::string_view text, float value)
{
    float nearest = std::numeric_limits<float>::quiet_NaN();
    std::from_chars(text.data(), text.data() + text.size(), nearest);
    if (nearest == value) {
        return;
    }
    double shown = std::numeric_limits<double>::quiet_NaN();
    std::from_chars(text.data(), text.data() + text.size(), shown);
    const double relative = std::abs((shown - double{value}) / double{value});
    LossList& list = shown == 0                     ? losses_.vanishing
                     : relative > noticeable_change ? losses_.changed
                                                    : losses_.digits_lost;
    if (on_loss_) {
        on_loss_(&list == &losses_.vanishing ? loss_rules::value_vanishes
                 : &list == &losses_.changed ? loss_rules::value_changed
                                             : loss_rules::digits_lost,
                 {address, value, std::string(text), relative});
        return;
    }
    ++list.count;
    if (most_ > 0 && (list.worst.size() < most_ || relative > list.worst.front().relative)) {
        add(list, {address, value, std::string(text), relative});
    }
}

/// `worst` is a heap with the least of them at its front.
void LossCount::add(LossList& list, Loss loss) const
{
    auto& worst = list.worst;
    if (worst.size() == most_) {
        std::pop_heap(worst.begin(), worst.end(), is_worse);
        worst.pop_back();
    }
    worst.push_back(std::move(loss));
    std::push_heap(worst.begin(), worst.end(), is_worse);
}

void LossCount::compare(const Address& address, std::string_view text, const std::string& whole)
{
    text = text.substr(0, text.find('\0'));
    if (text.size() >= whole.size() || !whole.starts_with(text) ||
        whole.find_first_not_of(' ', text.size()) == std::string::npos) {
        return;
    }
    if (losses_.cut++ < most_) {
        losses_.cut_texts.push_back({address, std::string(text), whole});
    }
}

Losses LossCount::result()
{
    Losses result = std::move(losses_);
    for (LossList* const list : {&result.vanishing, &result.changed, &result.digits_lost}) {
        std::sort_heap(list->worst.begin(), list->worst.end(), is_worse);
    }
    return result;
}

} // namespace velm
