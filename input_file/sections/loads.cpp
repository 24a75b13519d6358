#include "input_file/fields/text_content.hpp"
#include "input_file/records/records.hpp"
#include "input_file/sections/sections.hpp"
#include "input_file/sections/segment_series.hpp"

namespace velm {

void read_loads(RecordReader& in, Model& model)
{
    in.record(records::banners[6]);
    in.key(1);
    in.record(records::nps_option);
    model.nps_option = in.integer("nps_option");
    const bool hidden = !in.result.gaps.empty() && in.result.gaps.back() == Address{"model", "nps_option", {1}};
    if (model.nps_option > 0 || (hidden && !in.is_ahead(records::number_of_systems))) {
        in.record(records::nps_file);
        model.nps_file = text_as_served(in.text("nps_file"));
    }
    read_segment_series(in, model, &System::loads,
                        {records::number_of_loads, records::load_factors, "load_scale_factor", "load_conversion_factor",
                         records::load_segment, records::load_value});
}

} // namespace velm
