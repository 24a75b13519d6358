#include "input_file/fields/text_content.hpp"
#include "input_file/form_rules.hpp"
#include "input_file/records/records.hpp"
#include "input_file/sections/sections.hpp"

#include <utility>

namespace velm {
namespace {

void read_name(RecordReader& in, std::int32_t number, Segment& segment)
{
    in.record(records::segment_name);
    in.repeated("segment number", number);
    const std::string_view field = in.text("name");
    if (std::optional<std::string> name = text_before_nul(field)) {
        segment.name = *std::move(name);
    } else {
        in.report(form_rules::dropped_nul, "name", "is a name without a NUL after it", "one NUL, then blanks");
        segment.name = text_as_served(field);
    }
}

void read_geometry(RecordReader& in, std::int32_t number, Segment& segment)
{
    in.record(records::segment);
    in.repeated("segment number", number);
    segment.bottom_segment = in.segment_or_none("bottom_segment");
    segment.type = in.integer("type");
    segment.flow_option = in.integer("flow_option");
    segment.volume = in.real("volume");
    segment.velocity_multiplier = in.real("velocity_multiplier");
    segment.velocity_exponent = in.real("velocity_exponent");
    segment.depth_multiplier = in.real("depth_multiplier");
    segment.depth_exponent = in.real("depth_exponent");
    segment.length = in.real("length");
    segment.slope = in.real("slope");
    segment.width = in.real("width");
    segment.roughness = in.real("roughness");
    segment.minimum_depth = in.real("minimum_depth");
    segment.initial_surface_elevation = in.real("initial_surface_elevation");
    segment.bottom_elevation = in.real("bottom_elevation");
    segment.side_slope = in.real("side_slope");
    segment.initial_depth = in.real("initial_depth");
    segment.weir_height = in.real("weir_height");
    segment.weir_type = in.real("weir_type");
}

} // namespace

void read_segments(RecordReader& in, Model& model)
{
    in.record(records::banners[1]);
    const Count segments = in.count(records::number_of_segments);
    in.deliver_count({"segment", {}, {}}, segments);
    in.key(1);
    in.record(records::bed_volume_option);
    model.bed_volume_option = in.integer("bed_volume_option");
    in.record(records::bed_compaction_time_step);
    model.bed_compaction_time_step = in.real("bed_compaction_time_step");
    in.record(records::volume_factors);
    model.volume_scale_factor = in.real("volume_scale_factor");
    model.volume_conversion_factor = in.real("volume_conversion_factor");
    in.record(records::segment_name_caption);
    for (std::int32_t number = 1; in.goes_on(segments, number, records::segment_name); ++number) {
        in.key(number);
        read_name(in, number, model.segments.emplace_back());
    }
    in.segments = static_cast<std::int32_t>(model.segments.size());
    in.record(records::segment_caption);
    for (std::int32_t number = 1; Segment & segment : model.segments) {
        in.key(number);
        read_geometry(in, number++, segment);
    }
}

} // namespace velm
