#include "model_store/load_parts.hpp"

#include <utility>

namespace velm {

namespace {

void load_fields(LoadState& load, Model& model, ParentKeys& fields)
{
    TableReader row(load, "exchange_field", nullptr, &fields);
    while (row.next()) {
        ExchangeField field;
        field.scale_factor = row.real("scale_factor");
        field.conversion_factor = row.real("conversion_factor");
        if (load.sound()) {
            model.exchange_fields.push_back(std::move(field));
        }
    }
}

void load_functions(LoadState& load, Model& model, const ParentKeys& fields, ParentKeys& functions)
{
    constexpr std::size_t longest_description = 80;
    TableReader row(load, "exchange_function", &fields, &functions);
    while (row.next()) {
        ExchangeFunction function;
        function.description = row.text("description", longest_description);
        if (load.sound()) {
            model.exchange_fields[row.place(0)].functions.push_back(std::move(function));
        }
    }
}

void load_pairs(LoadState& load, Model& model, const ParentKeys& functions)
{
    TableReader row(load, "exchange_pair", &functions);
    while (row.next()) {
        ExchangePair pair;
        pair.first_segment = row.segment_or_outside("first_segment");
        pair.second_segment = row.segment_or_outside("second_segment");
        pair.area = row.real("area");
        pair.length = row.real("length");
        if (load.sound()) {
            model.exchange_fields[row.place(0)].functions[row.place(1)].pairs.push_back(pair);
        }
    }
}

} // namespace

void load_exchanges(LoadState& load, Model& model)
{
    ParentKeys fields;
    ParentKeys functions;
    load_fields(load, model, fields);
    load_functions(load, model, fields, functions);
    load_pairs(load, model, functions);
    load_series(load, "exchange_value", functions, [&](const TableReader& pair) -> TimeSeries& {
        return model.exchange_fields[pair.place(0)].functions[pair.place(1)].series;
    });
}

} // namespace velm
