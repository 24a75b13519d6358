#include "input_file/records/records.hpp"
#include "input_file/sections/sections.hpp"

namespace velm {

void read_segments(RecordReader& in, Model& model)
{
    in.record(records::banners[1]);
    const Count segments = in.count(records::number_of_segments);
    in.deliver_count({"segment", {}, {}}, segments);
    in.key(1);
    in.record_into<records::bed_volume_option, records::bed_compaction_time_step, records::volume_factors>(model);
    in.record(records::segment_name_caption);
    for (std::int32_t number = 1; in.goes_on(segments, number, records::segment_name); ++number) {
        in.key(number);
        in.record(records::segment_name);
        in.repeated("segment number", number);
        model.segments.emplace_back().name = in.name("name");
    }
    in.segments = static_cast<std::int32_t>(model.segments.size());
    in.record(records::segment_caption);
    for (std::int32_t number = 1; Segment & segment : model.segments) {
        in.key(number);
        in.record(records::segment);
        in.repeated("segment number", number++);
        in.data<records::segment>(segment);
    }
}

} // namespace velm
