#pragma once

#include "input_file/records/record_reader.hpp"
#include "model/model.hpp"

namespace velm {

// The sections of an input file in file order. Each takes its records from the banner on and fills its part of the
// model. They throw SectionLost.

void read_system_information(RecordReader& in, Model& model);
void read_segments(RecordReader& in, Model& model);
void read_flow_paths(RecordReader& in, Model& model);
void read_flow_series(RecordReader& in, Model& model);
void read_exchanges(RecordReader& in, Model& model);
void read_boundaries(RecordReader& in, Model& model);
void read_loads(RecordReader& in, Model& model);
void read_time_functions(RecordReader& in, Model& model);
void read_parameters(RecordReader& in, Model& model);
void read_constants(RecordReader& in, Model& model);
void read_initial_conditions(RecordReader& in, Model& model);

} // namespace velm
