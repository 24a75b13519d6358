#include "model_store/load_parts.hpp"

#include <utility>
#include <vector>

namespace velm {

namespace {

Segment read_segment(TableReader& row)
{
    constexpr std::size_t longest_name = 40;
    Segment segment;
    segment.name = row.text("name", longest_name);
    segment.bottom_segment = row.integer("bottom_segment");
    segment.type = row.integer("type");
    segment.flow_option = row.integer("flow_option");
    segment.volume = row.real("volume");
    segment.velocity_multiplier = row.real("velocity_multiplier");
    segment.velocity_exponent = row.real("velocity_exponent");
    segment.depth_multiplier = row.real("depth_multiplier");
    segment.depth_exponent = row.real("depth_exponent");
    segment.slope = row.real("slope");
    segment.length = row.real("length");
    segment.width = row.real("width");
    segment.roughness = row.real("roughness");
    segment.minimum_depth = row.real("minimum_depth");
    segment.initial_surface_elevation = row.real("initial_surface_elevation");
    segment.bottom_elevation = row.real("bottom_elevation");
    segment.side_slope = row.real("side_slope");
    segment.initial_depth = row.real("initial_depth");
    segment.weir_height = row.real("weir_height");
    segment.weir_type = row.real("weir_type");
    return segment;
}

} // namespace

void load_segments(LoadState& load, Model& model)
{
    // a bottom segment may come after the segment above it, so it is looked up when all are known
    std::vector<std::pair<std::string, std::int32_t>> bottoms;
    TableReader row(load, "segment", nullptr, &load.segments);
    while (row.next()) {
        Segment segment = read_segment(row);
        if (segment.bottom_segment != 0) {
            bottoms.emplace_back(row.row_in_words(), segment.bottom_segment);
        }
        if (load.sound()) {
            model.segments.push_back(std::move(segment));
        }
    }
    for (const auto& [above, bottom] : bottoms) {
        if (!load.segments.contains({bottom, 0})) {
            load.problems.add(missing_segment(load, above, "bottom_segment", bottom));
        }
    }
}

} // namespace velm
