#include "input_file/fields/text_content.hpp"
#include "input_file/form_rules.hpp"
#include "input_file/records/records.hpp"
#include "input_file/sections/instances.hpp"
#include "input_file/sections/sections.hpp"

namespace velm {

void read_time_functions(RecordReader& in, Model& model)
{
    in.record(records::banners[7]);
    const Count count = in.count(records::number_of_time_functions);
    Instances functions(model.time_function_types);
    for (std::int32_t number = 1; in.goes_on(count, number, records::time_function); ++number) {
        in.record(records::time_function);
        TimeFunction& function = functions.enter(in);
        function.description = text_as_served(in.text("description"));
        if (!in.is_ahead(records::number_of_time_pairs)) { // a function without pairs stands alone
            in.deliver_series(records::time_function_value, in.no_count());
            continue;
        }
        const Count pairs = in.count(records::number_of_time_pairs);
        if (!pairs.hidden && pairs.number == 0) {
            in.report(form_rules::other_form, "Number of Time Pairs", "stands for no pairs", "no such record");
        }
        in.time_pairs(pairs, records::time_function_value, function.series);
    }
    in.refuse_more(count, records::time_function);
}

} // namespace velm
