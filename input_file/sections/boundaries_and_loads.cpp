#include "input_file/fields/text_content.hpp"
#include "input_file/records/records.hpp"
#include "input_file/sections/sections.hpp"

namespace velm {
namespace {

/// Reads the boundaries or the loads of all systems, from the number of systems on.
template <const Record& items, const Record& factors, const Record& segment, const Record& pair>
void read_segment_series(RecordReader& in, Model& model, SegmentSeriesSet System::*set)
{
    const Count systems = in.repeated_count(records::number_of_systems, in.systems);
    for (std::int32_t number = 1; in.goes_on(systems, number, records::system_name); ++number) {
        const auto place = static_cast<std::size_t>(number) - 1;
        in.record(records::system_name);
        if (place < in.system_names.size()) {
            in.repeated_text("system name", in.system_names[place]);
        }
        if (place >= model.systems.size()) {
            model.systems.emplace_back();
        }
        System& system = model.systems[place];
        const Count count = in.count(items);
        if (!in.any(count, factors)) {
            continue;
        }
        in.key(number);
        in.record_into<factors>(system);
        for (std::int32_t item = 1; in.goes_on(count, item, segment); ++item) {
            in.key(number, item);
            SegmentSeries& series = (system.*set).items.emplace_back();
            in.record_into<segment>(series);
            in.time_pairs(in.count(records::number_of_time_pairs), pair, series.series);
        }
    }
}

} // namespace

void read_boundaries(RecordReader& in, Model& model)
{
    in.record(records::banners[5]);
    read_segment_series<records::number_of_boundaries, records::boundary_factors, records::boundary_segment,
                        records::boundary_value>(in, model, &System::boundaries);
}

void read_loads(RecordReader& in, Model& model)
{
    in.record(records::banners[6]);
    in.key(1);
    in.record_into<records::nps_option>(model);
    const bool hidden = !in.result.gaps.empty() && in.result.gaps.back() == Address{"model", "nps_option", {1}};
    if (model.nps_option > 0 || (hidden && !in.is_ahead(records::number_of_systems))) {
        in.record(records::nps_file);
        model.nps_file = text_as_served(in.text("nps_file"));
    }
    read_segment_series<records::number_of_loads, records::load_factors, records::load_segment, records::load_value>(
        in, model, &System::loads);
}

} // namespace velm
