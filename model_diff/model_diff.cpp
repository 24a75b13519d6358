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

/// Of items that have nothing but columns.
const auto nothing_else = [](const std::string& /*item*/, const auto& /*one*/, const auto& /*other*/) {};

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
        columns(tables::model, "", before, after);
        items(tables::segment, before.segments, after.segments, by_number,
              [](std::size_t place, const Segment&) { return numbered("segment", place); });
        fields(tables::flow_field, tables::flow_function, tables::flow_path, before.flow_fields, after.flow_fields,
               "path", &FlowFunction::paths, Section::flow_series);
        fields(tables::exchange_field, tables::exchange_function, tables::exchange_pair, before.exchange_fields,
               after.exchange_fields, "pair", &ExchangeFunction::pairs, Section::exchanges);
        systems(before, after);
        types(tables::time_function_type, tables::time_function, before.time_function_types, after.time_function_types,
              [this](const std::string& item, const TimeFunction& one, const TimeFunction& other) {
                  series(Section::time_functions, item, one.series, other.series);
              });
        types(tables::parameter_type, tables::parameter, before.parameter_types, after.parameter_types,
              [this](const std::string& item, const Parameter& one, const Parameter& other) {
                  by_segment(Section::parameters, item, "value", one.values, other.values);
              });
        types(tables::constant_type, tables::constant, before.constant_types, after.constant_types, nothing_else);
    }

private:
    /// Flow fields or exchange fields; `parts` are the member of a function that has its paths or pairs, a `part` each.
    template <class FieldTable, class FunctionTable, class PartTable, class Fields, class Parts>
    void fields(const FieldTable& field_table, const FunctionTable& function_table, const PartTable& part_table,
                const Fields& before, const Fields& after, const char* part, Parts parts, Section section)
    {
        const auto compare_functions = [&](const std::string& item, const auto& one, const auto& other) {
            items(
                part_table, one.*parts, other.*parts,
                [](const auto& way) {
                    return std::to_string(way.first_segment) + ' ' + std::to_string(way.second_segment);
                },
                [&](std::size_t place, const auto&) { return numbered(part, place) + " of " + item; });
            series(section, item, one.series, other.series);
        };
        const auto compare_fields = [&](const std::string& field, const auto& one, const auto& other) {
            items(
                function_table, one.functions, other.functions,
                [](const auto& function) { return function.description; },
                [&](std::size_t place, const auto& function) {
                    return numbered("function", place, function.description) + " of " + field;
                },
                compare_functions);
        };
        items(
            field_table, before, after, by_number,
            [&](std::size_t place, const auto&) { return numbered(name_in_words(field_table.name), place); },
            compare_fields);
    }

    void systems(const Model& before, const Model& after)
    {
        items(
            tables::system, before.systems, after.systems, std::mem_fn(&System::name),
            [](std::size_t place, const System& system) { return numbered("system", place, system.name); },
            [&](const std::string& item, const System& one, const System& other) {
                const std::string name = name_of_system(other, after.systems);
                entries(tables::boundary, name, one.boundaries, other.boundaries, Section::boundaries);
                entries(tables::load, name, one.loads, other.loads, Section::loads);
                initial_conditions(item, one, other);
            });
    }

    template <class Table>
    void entries(const Table& table, const std::string& system, const SegmentSeriesSet& before,
                 const SegmentSeriesSet& after, Section section)
    {
        items(
            table, before.items, after.items, [](const SegmentSeries& entry) { return std::to_string(entry.segment); },
            [&](std::size_t place, const SegmentSeries&) { return numbered(table.name, place) + " of " + system; },
            [&](const std::string& item, const SegmentSeries& one, const SegmentSeries& other) {
                series(section, item, one.series, other.series);
            });
    }

    void initial_conditions(const std::string& item, const System& before, const System& after)
    {
        for (const Column<InitialCondition>& column : tables::initial_condition.columns) {
            const auto list = [&](const System& system) {
                std::vector<float> values;
                for (InitialCondition condition : system.initial_conditions) {
                    values.push_back(std::get<float& (*)(InitialCondition&)>(column.member)(condition));
                }
                return values;
            };
            by_segment(Section::initial_conditions, item, name_in_words(column.name), list(before), list(after));
        }
    }

    template <class TypeTable, class Table, class Instance, class Compare>
    void types(const TypeTable& type_table, const Table& table, const std::vector<InstanceType<Instance>>& before,
               const std::vector<InstanceType<Instance>>& after, Compare compare)
    {
        const std::string kind = name_in_words(table.name);
        const auto type_words = [&](std::size_t, const InstanceType<Instance>& type) {
            return kind + "s of ISC number " + std::to_string(type.isc);
        };
        const auto compare_type = [&](const std::string&, const InstanceType<Instance>& one,
                                      const InstanceType<Instance>& other) {
            const auto words = [&](std::size_t place, const Instance&) {
                return numbered(kind, place) + " of ISC number " + std::to_string(other.isc);
            };
            items(table, one.instances, other.instances, by_number, words, compare);
        };
        items(
            type_table, before, after, [](const auto& type) { return std::to_string(type.isc); }, type_words,
            compare_type);
    }

    /// Compares two lists of a table's items: which there are, in what order, their columns, and what else `compare`
    /// looks at. `name` is what an item is known by, `words` says which one it is.
    template <class Table, class Item, class Name, class Words, class Compare = decltype(nothing_else)>
    void items(const Table& table, const std::vector<Item>& before, const std::vector<Item>& after, Name name,
               Words words, Compare compare = nothing_else)
    {
        for (const ItemMatch& match : match_items(names(before, name), names(after, name), is_type<Item>)) {
            found_.enter(table.name, match);
            compare_match(table, match, before, after, words, compare);
            found_.leave();
        }
    }

    template <class Table, class Item, class Words, class Compare>
    void compare_match(const Table& table, const ItemMatch& match, const std::vector<Item>& before,
                       const std::vector<Item>& after, Words words, Compare compare)
    {
        const Section section = section_of(table.name, "name");
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

    template <class Table, class Item>
    void columns(const Table& table, const std::string& item, const Item& before, const Item& after)
    {
        for (const Column<Item>& column : table.columns) {
            with_value(column, before, [&](const auto& one) {
                with_value(column, after, [&](const auto& other) {
                    if constexpr (std::is_same_v<decltype(one), decltype(other)>) {
                        if (!same(one, other)) {
                            found_.push_back({section_of(table.name, column.name), Change::changed, item,
                                              name_in_words(column.name), in_words(one), in_words(other)});
                        }
                    }
                });
            });
        }
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
    void by_segment(Section section, const std::string& item, const std::string& field,
                    const std::vector<float>& before, const std::vector<float>& after)
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

    void add(Section section, const std::string& item, const std::string& field, NumberChanges numbers)
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
