#include "input_file/records/records.hpp"
#include "input_file/sections/sections.hpp"
#include "input_file/sections/segment_series.hpp"

namespace velm {

void read_boundaries(RecordReader& in, Model& model)
{
    in.record(records::banners[5]);
    read_segment_series(in, model, &System::boundaries,
                        {records::number_of_boundaries, records::boundary_factors, "boundary_scale_factor",
                         "boundary_conversion_factor", records::boundary_segment, records::boundary_value});
}

} // namespace velm
