#pragma once

#include "bench/peers.h"
#include "model/model.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace velm::bench {

/// The segments as a program holds them that writes its own files: plain arrays in the order of the file.
struct SegmentArrays {
    std::int32_t count = 0;
    std::string names;                  ///< 40 characters each
    std::vector<std::int32_t> integers; ///< four each
    std::vector<float> reals;           ///< columns_of_a_row each
    std::vector<float> parameters;      ///< of the first segment, then of the second ...

    explicit SegmentArrays(const Model& model)
    {
        for (const Segment& s : model.segments) {
            ++count;
            names.append(s.name).append(40 - s.name.size(), ' ');
            integers.insert(integers.end(), {count, s.bottom_segment, s.type, s.flow_option});
            reals.insert(reals.end(),
                         {s.volume, s.velocity_multiplier, s.velocity_exponent, s.depth_multiplier, s.depth_exponent,
                          s.length, s.slope, s.width, s.roughness, s.minimum_depth, s.initial_surface_elevation,
                          s.bottom_elevation, s.side_slope, s.initial_depth, s.weir_height, s.weir_type});
            for (const auto& type : model.parameter_types) {
                for (const Parameter& parameter : type.instances) {
                    parameters.push_back(parameter.values[static_cast<std::size_t>(count) - 1]);
                }
            }
        }
    }
};

} // namespace velm::bench
