#include "input_file/fields/field_name.hpp"
#include "input_file/fields/text_content.hpp"
#include "input_file/records/records.hpp"
#include "input_file/sections/sections.hpp"

#include <array>

namespace velm {
namespace {

constexpr std::array<std::string_view, 2> names{"Surface Water Flow Field", "Porewater Flow Field"};

void read_function(RecordReader& in, std::int32_t field_number, std::int32_t number, ExchangeFunction& function)
{
    in.key(field_number, number);
    in.record(records::exchange_function);
    function.description = text_as_served(in.text("description"));
    const Count segment_pairs = in.count(records::number_of_exchange_pairs);
    for (std::int32_t place = 1; in.goes_on(segment_pairs, place, records::exchange_pair); ++place) {
        in.key(field_number, number, place);
        in.record_into<records::exchange_pair>(function.pairs.emplace_back());
    }
    const Count time_pairs = in.count(records::number_of_time_pairs);
    in.key(field_number, number);
    in.time_pairs(time_pairs, records::exchange_value, function.series);
}

} // namespace

void read_exchanges(RecordReader& in, Model& model)
{
    in.record(records::banners[4]);
    const Count fields = in.count(records::number_of_exchange_fields);
    for (std::int32_t field_number = 1; in.goes_on(fields, field_number, records::field_name); ++field_number) {
        ExchangeField& field = model.exchange_fields.emplace_back();
        in.known_record("name of the exchange field", field_name_line(names, "Exchange Field", field_number));
        const Count functions = in.count(records::number_of_exchange_functions);
        if (!in.any(functions, records::exchange_factors)) {
            continue;
        }
        in.key(field_number);
        in.record_into<records::exchange_factors>(field);
        for (std::int32_t number = 1; in.goes_on(functions, number, records::exchange_function); ++number) {
            read_function(in, field_number, number, field.functions.emplace_back());
        }
    }
}

} // namespace velm
