#include "model_store/numbered_rows.hpp"

#include "model_store/model_store.hpp"

#include <cmath>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace velm {
namespace {

/// One of the numbers of each item.
template <class Item>
RealColumn column_of(const std::vector<Item>& items, float Item::*number)
{
    return items.empty() ? RealColumn() : RealColumn(&(items.front().*number), sizeof(Item));
}

/// Fills one table, row by row in the order of the keys.
class Filler {
public:
    explicit Filler(std::string_view table) : table_{model_table(table)} {}

    NumberedTable take() { return std::move(table_); }

    void add_series(std::uint64_t parent, std::uint64_t item, const TimeSeries& series, std::size_t most_pairs)
    {
        const std::size_t pairs = series.times.size();
        const NumberedRows rows{
            {parent, item}, 1, pairs, {RealColumn(series.times.data()), RealColumn(series.values.data())}};
        if (pairs != series.values.size()) {
            refuse(shared_key(rows), "", "",
                   "there are " + counted(pairs, "time") + " and " + counted(series.values.size(), "value"),
                   "give as many of both");
        }
        if (pairs > most_pairs) {
            refuse(shared_key(rows), "", "", "there are " + counted(pairs, "pair"),
                   "thin the series out to at most " + std::to_string(most_pairs));
        }
        add(rows);
    }

    void add_for_each_segment(const NumberedRows& rows, std::size_t segments)
    {
        if (rows.count < segments) {
            refuse(shared_key(rows), "segment", "", "there is no row for segment " + std::to_string(rows.count + 1),
                   "give a row for each segment");
        }
        if (rows.count > segments) {
            refuse(shared_key(rows), "segment", "", "there are rows for " + counted(rows.count, "segment"),
                   "give rows for the " + std::to_string(segments) + " that there are");
        }
        add(rows);
    }

private:
    void add(const NumberedRows& rows)
    {
        for (std::size_t real = 0; real < table_.reals(); ++real) {
            refuse_infinite(rows, real);
        }
        if (rows.count != 0) {
            table_.rows.push_back(rows);
        }
    }

    static std::string counted(std::size_t count, const char* what)
    {
        return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
    }

    [[noreturn]] void refuse(std::span<const std::uint64_t> key, std::string_view column, std::string value,
                             std::string message, std::string remedy) const
    {
        throw StoreError({{table_.shape.name, table_.shape.row_in_words(key), std::string(column), std::move(value),
                           std::move(message), std::move(remedy)}},
                         false);
    }

    [[nodiscard]] std::span<const std::uint64_t> shared_key(const NumberedRows& rows) const
    {
        return std::span(rows.key).first(table_.shared_keys());
    }

    void refuse_infinite(const NumberedRows& rows, std::size_t real) const
    {
        for (std::size_t row = 0; row < rows.count; ++row) {
            const float number = rows.reals.at(real)[row];
            if (!std::isfinite(number)) {
                const auto shared = shared_key(rows);
                std::vector<std::uint64_t> key(shared.begin(), shared.end());
                key.push_back(row + 1);
                refuse(key, table_.shape.columns[table_.shape.keys + real], std::to_string(number), "is not finite",
                       "store a finite number");
            }
        }
    }

    NumberedTable table_;
};

constexpr std::size_t largest_row_number = std::numeric_limits<std::int32_t>::max();

/// Each of the parents has items, and each of these a series.
template <class Parents, class ItemsOf>
NumberedTable series_table(std::string_view table, const Parents& parents, const ItemsOf& items_of,
                           std::size_t most_pairs = largest_row_number)
{
    Filler filler(table);
    for (std::uint64_t parent_number = 1; const auto& parent : parents) {
        for (std::uint64_t number = 1; const auto& item : items_of(parent)) {
            filler.add_series(parent_number, number++, item.series, most_pairs);
        }
        ++parent_number;
    }
    return filler.take();
}

NumberedTable initial_conditions(const Model& model)
{
    Filler filler("initial_condition");
    for (std::uint64_t system_number = 1; const System& system : model.systems) {
        const auto& conditions = system.initial_conditions;
        filler.add_for_each_segment({{system_number++},
                                     1,
                                     conditions.size(),
                                     {column_of(conditions, &InitialCondition::concentration),
                                      column_of(conditions, &InitialCondition::dissolved_fraction)}},
                                    model.segments.size());
    }
    return filler.take();
}

NumberedTable parameter_values(const Model& model)
{
    Filler filler("parameter_value");
    for (std::uint64_t type_number = 1; const auto& type : model.parameter_types) {
        for (std::uint64_t number = 1; const Parameter& parameter : type.instances) {
            filler.add_for_each_segment(
                {{type_number, number++}, 1, parameter.values.size(), {RealColumn(parameter.values.data())}},
                model.segments.size());
        }
        ++type_number;
    }
    return filler.take();
}

} // namespace

std::vector<NumberedTable> numbered_tables(const Model& model)
{
    const auto boundaries_of = [](const System& system) { return std::span(system.boundaries.items); };
    const auto loads_of = [](const System& system) { return std::span(system.loads.items); };
    const auto functions_of = [](const auto& field) { return std::span(field.functions); };
    const auto instances_of = [](const auto& type) { return std::span(type.instances); };
    return {initial_conditions(model),
            series_table("boundary_value", model.systems, boundaries_of, SegmentSeries::most_pairs),
            series_table("load_value", model.systems, loads_of, SegmentSeries::most_pairs),
            series_table("flow_value", model.flow_fields, functions_of),
            series_table("exchange_value", model.exchange_fields, functions_of),
            series_table("time_function_value", model.time_function_types, instances_of),
            parameter_values(model)};
}

} // namespace velm
