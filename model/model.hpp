#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace velm {

/// A water-quality model as plain data: all that a host holds and an export can ask for.
///
/// Items are numbered from 1 by their place in their vector. Texts are single-byte characters in
/// ISO 8859-1. Reals are single precision, as they travel to the plug-in. Units are the modeller's choice
/// unless a comment names one; nothing here is converted or interpreted.

/// Times, most often in days from the start of the simulation, and the value at each of them; both vectors
/// have the same length.
struct TimeSeries {
    std::vector<float> times;
    std::vector<float> values;

    bool operator==(const TimeSeries&) const = default;
};

/// A boundary concentration or a load: where it enters, and how it changes with time.
struct SegmentSeries {
    static constexpr std::size_t most_pairs = 100'000; ///< the room that an export has for one
    std::int32_t segment = 0;
    TimeSeries series;

    bool operator==(const SegmentSeries&) const = default;
};

/// The boundaries or the loads of one system, with the factors that the engine multiplies them by.
struct SegmentSeriesSet {
    float scale_factor = 1;
    float conversion_factor = 1;
    std::vector<SegmentSeries> items;

    bool operator==(const SegmentSeriesSet&) const = default;
};

struct InitialCondition {
    float concentration = 0;
    float dissolved_fraction = 0; ///< 0 to 1

    bool operator==(const InitialCondition&) const = default;
};

/// A transported constituent: temperature, an oxygen, nutrient or solids fraction.
struct System {
    std::string name; ///< at most 30 characters
    std::string tag;  ///< at most 5 characters
    SegmentSeriesSet boundaries;
    SegmentSeriesSet loads;
    std::int32_t solids_transport_field = 0;
    float solids_density = 0; ///< g/mL
    float maximum_concentration = 0;
    std::vector<InitialCondition> initial_conditions; ///< one for each segment

    bool operator==(const System&) const = default;
};

/// One computational element of the water body or its bed.
struct Segment {
    std::string name;                ///< at most 40 characters
    std::int32_t bottom_segment = 0; ///< the segment below; 0 for none
    std::int32_t type = 0;           ///< surface water, subsurface water, surface bed, subsurface bed
    std::int32_t flow_option = 0;    ///< 3 for segment 1 when flows come from a hydrodynamic file
    float volume = 0;
    float velocity_multiplier = 0;
    float velocity_exponent = 0;
    float depth_multiplier = 0;
    float depth_exponent = 0;
    float slope = 0;
    float length = 0;
    float width = 0;
    float roughness = 0; ///< Manning's n
    float minimum_depth = 0;
    float initial_surface_elevation = 0;
    float bottom_elevation = 0;
    float side_slope = 0;
    float initial_depth = 0;
    float weir_height = 0;
    float weir_type = 0;

    bool operator==(const Segment&) const = default;
};

/// Part of a flow function's way through the segments. Segment 0 is the world outside the model.
struct FlowPath {
    std::int32_t first_segment = 0;
    std::int32_t second_segment = 0;
    float fraction = 0; ///< of the function's flow

    bool operator==(const FlowPath&) const = default;
};

struct FlowFunction {
    std::string description; ///< at most 80 characters
    std::vector<FlowPath> paths;
    TimeSeries series;

    bool operator==(const FlowFunction&) const = default;
};

/// Surface water, pore water, solids 1 to 3, evaporation and precipitation, in this order.
struct FlowField {
    float scale_factor = 1;
    float conversion_factor = 1;
    std::vector<FlowFunction> functions;

    bool operator==(const FlowField&) const = default;
};

/// Two segments that mix through a common area over a mixing length. Segment 0 is outside the model.
struct ExchangePair {
    std::int32_t first_segment = 0;
    std::int32_t second_segment = 0;
    float area = 0;
    float length = 0;

    bool operator==(const ExchangePair&) const = default;
};

struct ExchangeFunction {
    std::string description; ///< at most 80 characters
    std::vector<ExchangePair> pairs;
    TimeSeries series;

    bool operator==(const ExchangeFunction&) const = default;
};

/// Surface water, then pore water.
struct ExchangeField {
    float scale_factor = 1;
    float conversion_factor = 1;
    std::vector<ExchangeFunction> functions;

    bool operator==(const ExchangeField&) const = default;
};

struct TimeFunction {
    bool used = false;
    std::string description; ///< at most 80 characters
    TimeSeries series;

    bool operator==(const TimeFunction&) const = default;
};

struct Parameter {
    bool used = false;
    std::string description; ///< at most 60 characters
    float scale_factor = 1;
    std::vector<float> values; ///< one for each segment

    bool operator==(const Parameter&) const = default;
};

struct Constant {
    bool used = false;
    std::string description; ///< at most 60 characters
    float value = 0;

    bool operator==(const Constant&) const = default;
};

/// A type of time function, parameter or constant, known by its ISC number, with its instances.
template <class Instance>
struct InstanceType {
    std::int32_t isc = 0; ///< unique among the types of its class
    std::vector<Instance> instances;

    bool operator==(const InstanceType&) const = default;
};

struct Model {
    std::int32_t model_type = 0;
    /// Triples of integers in the host's own order; nothing reads a meaning into them.
    std::array<std::int32_t, 3> start_date{};
    std::array<std::int32_t, 3> start_time{};
    std::array<std::int32_t, 3> skip_date{};
    std::array<std::int32_t, 3> skip_time{};
    float julian_end_time = 0;
    std::int32_t mass_balance_table_output = 0;
    std::int32_t solution_technique = 0;
    std::int32_t negative_solution = 0;
    std::int32_t restart = 0;
    std::int32_t time_optimization = 0;
    std::int32_t water_quality_linkage = 0;
    float topt_factor = 0;
    float maximum_time_step = 0; ///< days
    float minimum_time_step = 0; ///< days
    float print_interval = 0;    ///< days

    std::int32_t bed_volume_option = 0;
    float bed_compaction_time_step = 0;
    float volume_scale_factor = 1;
    float volume_conversion_factor = 1;

    std::string hydrodynamic_file; ///< at most 512 characters; asked for when segment 1 has flow option 3
    std::int32_t nps_option = 0;   ///< above 0: the loads also come from nps_file
    std::string nps_file;          ///< at most 512 characters

    std::vector<System> systems;
    std::vector<Segment> segments;
    std::vector<FlowField> flow_fields;
    std::vector<ExchangeField> exchange_fields;
    std::vector<InstanceType<TimeFunction>> time_function_types;
    std::vector<InstanceType<Parameter>> parameter_types;
    std::vector<InstanceType<Constant>> constant_types;

    bool operator==(const Model&) const = default;
};

} // namespace velm
