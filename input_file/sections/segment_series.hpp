#pragma once

#include "input_file/records/record_reader.hpp"
#include "model/model.hpp"

#include <string_view>

namespace velm {

/// What tells the boundaries from the loads in a file.
struct SegmentSeriesRecords {
    const Record& count;
    const Record& factors;
    std::string_view scale_factor;
    std::string_view conversion_factor;
    const Record& segment;
    const Record& pair;
};

/// Reads the boundaries or the loads of all systems, from the number of systems on.
void read_segment_series(RecordReader& in, Model& model, SegmentSeriesSet System::*set,
                         const SegmentSeriesRecords& form);

} // namespace velm
