#include "input_file/fields/text_content.hpp"
#include "input_file/form_rules.hpp"
#include "input_file/records/records.hpp"
#include "input_file/sections/instances.hpp"
#include "input_file/sections/sections.hpp"

namespace velm {

void read_constants(RecordReader& in, Model& model)
{
    in.record(records::banners[9]);
    const Count count = in.count(records::number_of_constants);
    Instances constants(model.constant_types);
    for (std::int32_t number = 1; in.goes_on(count, number, records::constant); ++number) {
        in.record(records::constant);
        Constant& constant = constants.enter(in);
        in.data<records::constant>(constant);
        const std::string_view description = in.text("description");
        if (in.has_lost_nuls() && description.ends_with(' ') && !text_before_nul(description)) {
            in.report(form_rules::dropped_nul, "description", "is a description without a NUL after it",
                      "one NUL, then blanks");
            constant.description = text_as_served(description);
        } else {
            constant.description = text_before_nul_or_cut(description);
        }
    }
    in.refuse_more(count, records::constant);
}

} // namespace velm
