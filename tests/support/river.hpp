#pragma once

#include "model/model.hpp"

namespace velm {

/// A small model in which nothing is wrong and that its input file holds to the last digit.
inline Model river()
{
    Model model;
    model.start_date = {2001, 3, 1};
    model.julian_end_time = 5;
    model.maximum_time_step = 1;
    model.minimum_time_step = 0.5F;
    model.print_interval = 1;
    model.volume_conversion_factor = 1000;
    model.segments.resize(3);
    for (Segment& segment : model.segments) {
        segment.volume = 1000;
    }
    model.segments[0].bottom_segment = 3;
    const TimeSeries series{{0, 1, 2, 5}, {1.5F, 2, 2.5F, 3}};
    for (const auto* const name : {"Nitrate", "Oxygen"}) {
        System system;
        system.name = name;
        system.maximum_concentration = 100;
        system.boundaries.items = {{1, series}, {2, series}};
        system.loads.items = {{2, series}};
        system.initial_conditions.assign(3, {8, 1});
        model.systems.push_back(system);
    }
    model.flow_fields = {{1, 1, {{"Brook", {{0, 1, 1}, {1, 2, 0.5F}}, series}, {"Mill", {{1, 2, 1}}, series}}}};
    model.exchange_fields = {{1, 1, {{"Tide", {{0, 2, 50, 100}}, series}}}};
    model.time_function_types = {{5, {{false, "Kept", {}}, {true, "Light", series}}}, {7, {{false, "", {}}}}, {9, {}}};
    model.time_function_types[2].instances = {{true, "Wind", series}};
    model.parameter_types = {{2, {{true, "Shade", 1, {0.25F, 0.5F, 0.75F}}}}};
    model.constant_types = {{11, {{true, "Rate", 0.125F}}}, {13, {{true, "Limit", 2}}}};
    return model;
}

} // namespace velm
