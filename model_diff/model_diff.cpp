#include "model_diff/model_diff.hpp"

#include "input_file/sections/section_of.hpp"
#include "model/items.hpp"
#include "model/real_in_words.hpp"
#include "model/words.hpp"
#include "model_diff/item_match.hpp"
#include "plain_text/plain_text.hpp"

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <type_traits>
#include <utility>

namespace velm {

namespace {

std::string in_words(std::int32_t value)
{
    return std::to_string(value);
}
std::string in_words(bool value)
{
    return value ? "yes" : "no";
}
std::string in_words(float value)
{
    return real_in_words(value);
}
std::string in_words(const std::string& latin1)
{
    return std::string("'").append(printable_latin1(latin1, longest_quote)).append("'");
}

/// "system 3", or "system 3 (NITRATE)" when it has a name.
std::string numbered(std::string_view kind, std::size_t place, const std::string& latin1 = {})
{
    const std::string words = std::string(kind) + ' ' + std::to_string(place + 1);
    return latin1.empty() ? words : words + " (" + printable_latin1(latin1, longest_quote) + ")";
}

/// A system's name, with its number where that alone does not tell it from the others.
std::string name_of_system(const System& system, const std::vector<System>& systems)
{
    const bool is_alone = std::ranges::count(systems, system.name, &System::name) == 1;
    return !system.name.empty() && is_alone
               ? printable_latin1(system.name, longest_quote)
               : numbered("system", static_cast<std::size_t>(&system - systems.data()), system.name);
}

/// Items that are known by their number alone.
const auto by_number = [](const auto& /*item*/) { return std::string(); };

/// Another ISC number makes another type, while an item may get another name.
template <class Item>
constexpr bool is_type = false;
template <class Instance>
constexpr bool is_type<InstanceType<Instance>> = true;

/// Collects differences, each with the rows that are being compared.
class PlacedDifferences {
public:
    explicit PlacedDifferences(std::vector<Difference>& found) : found_(found) {}

    void push_back(Difference difference)
    {
        difference.old_place = old_.back();
        difference.new_place = new_.back();
        found_.push_back(std::move(difference));
    }
    /// Goes to a row below the present one.
    void enter(std::string_view table, const ItemMatch& match)
    {
        old_.push_back(below(old_.back(), table, match.old_place));
        new_.push_back(below(new_.back(), table, match.new_place));
        ++depth_;
    }
    void leave()
    {
        old_.pop_back();
        new_.pop_back();
        --depth_;
    }

private:
    [[nodiscard]] Address below(Address address, std::string_view table, std::optional<std::size_t> place) const
    {
        address.numbers.at(depth_) = static_cast<std::int64_t>(place.value_or(0) + (place ? 1 : 0));
        address.table = place ? table : std::string_view();
        return address;
    }

    std::vector<Difference>& found_;
    std::vector<Address> old_{{}};
    std::vector<Address> new_{{}};
    std::size_t depth_ = 0;
};

class Comparison {
public:
    Comparison(const DiffOptions& options, std::vector<Difference>& found) : options_(options), found_(found) {}

    void run(const Model& before, const Model& after)
    {
        columns("model", "", before, after);
        segments(before, after);
        flow_fields(before, after);
        exchange_fields(before, after);
        systems(before, after);
        types("time_function", "time function", before.time_function_types, after.time_function_types,
              [this](const std::string& item, const TimeFunction& one, const TimeFunction& other) {
                  series(Section::time_functions, item, one.series, other.series);
              });
        types("parameter", "parameter", before.parameter_types, after.parameter_types,
              [this](const std::string& item, const Parameter& one, const Parameter& other) {
                  by_segment(Section::parameters, item, "value", one.values, other.values);
              });
        types("constant", "constant", before.constant_types, after.constant_types,
              [](const std::string&, const Constant&, const Constant&) {});
    }

private:
    void segments(const Model& before, const Model& after)
    {
        items(
            "segment", before.segments, after.segments, by_number,
            [](std::size_t place, const Segment&) { return numbered("segment", place); },
            [](const std::string&, const Segment&, const Segment&) {});
    }

    void flow_fields(const Model& before, const Model& after)
    {
        const auto field_words = [](std::size_t place, const FlowField&) { return numbered("flow field", place); };
        const auto compare_field = [this](const std::string& field, const FlowField& one, const FlowField& other) {
            items(
                "flow_function", one.functions, other.functions, std::mem_fn(&FlowFunction::description),
                [&](std::size_t place, const FlowFunction& function) {
                    return numbered("function", place, function.description) + " of " + field;
                },
                [this](const std::string& item, const FlowFunction& old_one, const FlowFunction& new_one) {
                    ways("flow_path", "path", item, old_one.paths, new_one.paths);
                    series(Section::flow_series, item, old_one.series, new_one.series);
                });
        };
        items("flow_field", before.flow_fields, after.flow_fields, by_number, field_words, compare_field);
    }

    void exchange_fields(const Model& before, const Model& after)
    {
        const auto field_words = [](std::size_t place, const ExchangeField&) {
            return numbered("exchange field", place);
        };
        const auto compare_field = [this](const std::string& field, const ExchangeField& one,
                                          const ExchangeField& other) {
            items(
                "exchange_function", one.functions, other.functions, std::mem_fn(&ExchangeFunction::description),
                [&](std::size_t place, const ExchangeFunction& function) {
                    return numbered("function", place, function.description) + " of " + field;
                },
                [this](const std::string& item, const ExchangeFunction& old_one, const ExchangeFunction& new_one) {
                    ways("exchange_pair", "pair", item, old_one.pairs, new_one.pairs);
                    series(Section::exchanges, item, old_one.series, new_one.series);
                });
        };
        items("exchange_field", before.exchange_fields, after.exchange_fields, by_number, field_words, compare_field);
    }

    void systems(const Model& before, const Model& after)
    {
        items(
            "system", before.systems, after.systems, std::mem_fn(&System::name),
            [](std::size_t place, const System& system) { return numbered("system", place, system.name); },
            [&](const std::string& item, const System& one, const System& other) {
                const std::string name = name_of_system(other, after.systems);
                entries("boundary", name, one.boundaries, other.boundaries, Section::boundaries);
                entries("load", name, one.loads, other.loads, Section::loads);
                initial_conditions(item, one, other);
            });
    }

    void entries(std::string_view table, const std::string& system, const SegmentSeriesSet& before,
                 const SegmentSeriesSet& after, Section section)
    {
        items(
            table, before.items, after.items, [](const SegmentSeries& entry) { return std::to_string(entry.segment); },
            [&](std::size_t place, const SegmentSeries&) { return numbered(table, place) + " of " + system; },
            [&](const std::string& item, const SegmentSeries& one, const SegmentSeries& other) {
                series(section, item, one.series, other.series);
            });
    }

    void initial_conditions(const std::string& item, const System& before, const System& after)
    {
        const auto list = [](const System& system, float InitialCondition::*member) {
            std::vector<float> values;
            for (const InitialCondition& condition : system.initial_conditions) {
                values.push_back(condition.*member);
            }
            return values;
        };
        for (const auto& [field, member] : {std::pair{"concentration", &InitialCondition::concentration},
                                            std::pair{"dissolved fraction", &InitialCondition::dissolved_fraction}}) {
            by_segment(Section::initial_conditions, item, field, list(before, member), list(after, member));
        }
    }

    template <class Way>
    void ways(std::string_view table, std::string_view kind, const std::string& function,
              const std::vector<Way>& before, const std::vector<Way>& after)
    {
        items(
            table, before, after,
            [](const Way& way) { return std::to_string(way.first_segment) + ' ' + std::to_string(way.second_segment); },
            [&](std::size_t place, const Way&) { return numbered(kind, place) + " of " + function; },
            [](const std::string&, const Way&, const Way&) {});
    }

    template <class Instance, class Compare>
    void types(std::string_view table, std::string_view kind, const std::vector<InstanceType<Instance>>& before,
               const std::vector<InstanceType<Instance>>& after, Compare compare)
    {
        const auto type_words = [&](std::size_t, const InstanceType<Instance>& type) {
            return std::string(kind) + "s of ISC number " + std::to_string(type.isc);
        };
        const auto compare_type = [&](const std::string&, const InstanceType<Instance>& one,
                                      const InstanceType<Instance>& other) {
            const auto words = [&](std::size_t place, const Instance&) {
                return numbered(kind, place) + " of ISC number " + std::to_string(other.isc);
            };
            items(table, one.instances, other.instances, by_number, words, compare);
        };
        items(
            table, before, after, [](const auto& type) { return std::to_string(type.isc); }, type_words, compare_type);
    }

    /// Compares two lists of a table's items: which there are, in what order, their columns, and what else `compare`
    /// looks at. `name` is what an item is known by, `words` says which one it is.
    template <class Item, class Name, class Words, class Compare>
    void items(std::string_view table, const std::vector<Item>& before, const std::vector<Item>& after, Name name,
               Words words, Compare compare)
    {
        const Section section = section_of(table, "name");
        for (const ItemMatch& match : match_items(names(before, name), names(after, name), is_type<Item>)) {
            found_.enter(table, match);
            compare_match(section, table, match, before, after, words, compare);
            found_.leave();
        }
    }

    template <class Item, class Words, class Compare>
    void compare_match(Section section, std::string_view table, const ItemMatch& match, const std::vector<Item>& before,
                       const std::vector<Item>& after, Words words, Compare compare)
    {
        if (!match.old_place) {
            found_.push_back({section, Change::added, words(*match.new_place, after[*match.new_place])});
            return;
        }
        const Item& one = before[*match.old_place];
        if (!match.new_place) {
            found_.push_back({section, Change::removed, words(*match.old_place, one)});
            return;
        }
        const Item& other = after[*match.new_place];
        const std::string item = words(*match.new_place, other);
        if (match.moved) {
            found_.push_back({section, Change::changed, item, "number", std::to_string(*match.old_place + 1),
                              std::to_string(*match.new_place + 1)});
        }
        columns(table, item, one, other);
        compare(item, one, other);
    }

    template <class Item, class Name>
    static std::vector<std::string> names(const std::vector<Item>& items, Name name)
    {
        std::vector<std::string> list;
        std::transform(items.begin(), items.end(), std::back_inserter(list), name);
        return list;
    }

    template <class Item>
    void columns(std::string_view table, const std::string& item, const Item& before, const Item& after)
    {
        for_each_table([&](TableId /*id*/, const auto& known) {
            if constexpr (std::is_same_v<typename std::remove_cvref_t<decltype(known)>::Item, Item>) {
                for (const Column<Item>& column : known.columns) {
                    if (known.name == table) {
                        compare_column(table, item, column, before, after);
                    }
                }
            }
        });
    }

    template <class Item>
    void compare_column(std::string_view table, const std::string& item, const Column<Item>& column, const Item& before,
                        const Item& after)
    {
        with_value(column, before, [&](const auto& one) {
            with_value(column, after, [&](const auto& other) {
                if constexpr (std::is_same_v<decltype(one), decltype(other)>) {
                    if (!same(one, other)) {
                        found_.push_back({section_of(table, column.name), Change::changed, item,
                                          name_in_words(column.name), in_words(one), in_words(other)});
                    }
                }
            });
        });
    }

    /// Walks both series by time.
    void series(Section section, const std::string& item, const TimeSeries& before, const TimeSeries& after)
    {
        NumberChanges numbers;
        std::size_t o = 0;
        std::size_t n = 0;
        while (o < before.times.size() || n < after.times.size()) {
            const bool both = o < before.times.size() && n < after.times.size();
            if (both && same(before.times[o], after.times[n])) {
                compare_numbers(numbers, after.times[n], before.values[o], after.values[n]);
                ++o;
                ++n;
            } else if (n == after.times.size() || (both && before.times[o] < after.times[n])) {
                numbers.changes.push_back({Change::removed, before.times[o], before.values[o], 0});
                ++o;
            } else {
                numbers.changes.push_back({Change::added, after.times[n], 0, after.values[n]});
                ++n;
            }
        }
        add(section, item, "", std::move(numbers));
    }

    /// Segments that one side lacks are reported as such, not here.
    void by_segment(Section section, const std::string& item, const char* field, const std::vector<float>& before,
                    const std::vector<float>& after)
    {
        NumberChanges numbers;
        numbers.by_segment = true;
        for (std::size_t place = 0; place < std::min(before.size(), after.size()); ++place) {
            compare_numbers(numbers, static_cast<float>(place + 1), before[place], after[place]);
        }
        add(section, item, field, std::move(numbers));
    }

    void compare_numbers(NumberChanges& numbers, float at, float one, float other) const
    {
        ++numbers.in_both;
        if (!same(one, other)) {
            numbers.changes.push_back({Change::changed, at, one, other});
        }
    }

    void add(Section section, const std::string& item, const char* field, NumberChanges numbers)
    {
        if (!numbers.changes.empty()) {
            found_.push_back({section, Change::numbers, item, field, "", "", std::move(numbers)});
        }
    }

    [[nodiscard]] bool same(float one, float other) const
    {
        return one == other || std::abs(double{one} - double{other}) <=
                                   options_.tolerance * std::max(std::abs(double{one}), std::abs(double{other}));
    }
    template <class Value>
    [[nodiscard]] static bool same(const Value& one, const Value& other)
    {
        return one == other;
    }

    const DiffOptions& options_;
    PlacedDifferences found_;
};

} // namespace

std::string_view name_of(Change change)
{
    switch (change) {
    case Change::changed: return "changed";
    case Change::numbers: return "numbers changed";
    case Change::added: return "added";
    case Change::removed: break;
    }
    return "removed";
}

std::vector<Difference> differences(const Model& old_model, const Model& new_model, const DiffOptions& options)
{
    std::vector<Difference> found;
    Comparison(options, found).run(old_model, new_model);
    std::stable_sort(found.begin(), found.end(),
                     [](const Difference& one, const Difference& other) { return one.section < other.section; });
    return found;
}

} // namespace velm
