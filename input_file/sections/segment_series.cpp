#include "input_file/sections/segment_series.hpp"

#include "input_file/records/records.hpp"

namespace velm {
namespace {

void read_set(RecordReader& in, std::int32_t system, SegmentSeriesSet& set, const SegmentSeriesRecords& form)
{
    const Count count = in.count(form.count);
    if (!in.goes_on(count, 1, form.factors)) {
        return;
    }
    in.key(system);
    in.record(form.factors);
    set.scale_factor = in.real(form.scale_factor);
    set.conversion_factor = in.real(form.conversion_factor);
    for (std::int32_t number = 1; in.goes_on(count, number, form.segment); ++number) {
        in.key(system, number);
        in.record(form.segment);
        SegmentSeries& item = set.items.emplace_back();
        item.segment = in.segment("segment");
        const Count pairs = in.count(records::number_of_time_pairs);
        in.time_pairs(pairs, form.pair, item.series);
    }
}

} // namespace

void read_segment_series(RecordReader& in, Model& model, SegmentSeriesSet System::*set,
                         const SegmentSeriesRecords& form)
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
        read_set(in, number, model.systems[place].*set, form);
    }
}

} // namespace velm
