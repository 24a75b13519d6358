#include "tool/file_forecast.hpp"

#include <cmath>
#include <string>
#include <string_view>

namespace velm {
namespace {

constexpr std::uint64_t line_end = 2;
constexpr std::uint64_t label_column = 20; // most records have their label after twenty columns

class Count {
public:
    void records(std::uint64_t number, std::uint64_t characters_each)
    {
        sum.records += number;
        sum.bytes += number * (characters_each + line_end);
    }
    void record(std::uint64_t characters) { records(1, characters); }
    void labelled(std::string_view label) { record(label_column + label.size()); }
    void factors(std::string_view label) { record(30 + label.size()); }
    void banner(std::string_view title)
    {
        constexpr std::uint64_t marks = 25 + 1 + 1 + 35; // a blank, 24 and 35 equals signs, blanks around the title
        record(marks + title.size());
    }
    void free_text(std::uint64_t characters) { record(1 + characters); }
    void free_series(const TimeSeries& series)
    {
        for (std::size_t i = 0; i < series.times.size(); ++i) {
            record(free_real_length(series.times[i]) + free_real_length(series.values[i]));
        }
    }

    FileForecast sum;
};

std::uint64_t free_integer_length(std::int64_t value)
{
    return 2 + std::to_string(std::abs(value)).size(); // two blanks, or one and the minus sign
}

void count_system_information(Count& count, const Model& model)
{
    count.record(42); // module type and version
    count.banner("Model Parameterization");
    count.record(35 + std::string_view("Start date and time").size());
    count.record(35 + std::string_view("Skip date and time").size());
    for (const std::string_view label :
         {"Julian end time", "Number of Systems", "Mass Balance Table Output", "Solution Technique Option",
          "Negative Solution Option", "Restart Option", "Time Optimization Option", "WQ Module Linkage Option",
          "TOPT Factor", "Min and Max Timestep"}) {
        count.labelled(label);
    }
    count.record(15 + std::string_view("Time and Print Interval").size());
    count.records(model.systems.size(), 40);
}

void count_segments(Count& count, const Model& model)
{
    count.banner("Segment Information");
    for (const std::string_view label : {"Number of Segments", "Bed Volume Option", "Bed Compaction Time Step"}) {
        count.labelled(label);
    }
    count.factors("Volume Scale & Conversion Factor");
    count.record(std::string_view("  Segment   SegName").size());
    count.records(model.segments.size(), 50);
    count.record(261); // the caption of the geometry
    count.records(model.segments.size(), 260);
}

void count_flow_paths(Count& count, const Model& model)
{
    count.banner("Flow Path Information");
    count.record(28);
    count.labelled("Number of flow fields");
    const bool hydrodynamic_file = !model.segments.empty() && model.segments.front().flow_option == 3;
    for (std::size_t f = 0; f < model.flow_fields.size(); ++f) {
        count.free_text(15 + free_integer_length(static_cast<std::int64_t>(f + 1)));
        if (f == 0 && hydrodynamic_file) {
            count.free_text(512);
        }
        count.labelled("Number of Flow Functions for Flow Field");
        for (const FlowFunction& function : model.flow_fields[f].functions) {
            count.free_text(80);
            count.record(free_integer_length(static_cast<std::int64_t>(function.paths.size())));
            count.records(function.paths.size(), 25);
        }
    }
}

void count_flows(Count& count, const Model& model)
{
    count.banner("Flow Time Series");
    count.labelled("Number of Flow Fields");
    for (const FlowField& field : model.flow_fields) {
        count.free_text(40);
        count.labelled("Number of inflows");
        if (!field.functions.empty()) {
            count.factors("Flow Scale & Conversion Factors");
        }
        for (const FlowFunction& function : field.functions) {
            count.record(30);
            count.labelled("Number of Time Pairs");
            count.free_series(function.series);
        }
    }
}

void count_exchanges(Count& count, const Model& model)
{
    count.banner("Segment Dispersion/Exhange");
    count.labelled("Number of Exchange Fields");
    for (const ExchangeField& field : model.exchange_fields) {
        count.free_text(40);
        count.labelled("Number of Exchange Functions");
        if (!field.functions.empty()) {
            count.factors("Dispersion Scale & Conversion Factors");
        }
        for (const ExchangeFunction& function : field.functions) {
            count.free_text(80);
            count.labelled("Number of segment exchange pairs");
            for (const ExchangePair& pair : function.pairs) {
                count.record(free_integer_length(pair.first_segment) + free_integer_length(pair.second_segment) +
                             free_real_length(pair.area) + free_real_length(pair.length));
            }
            count.labelled("Number of Time Pairs");
            count.free_series(function.series);
        }
    }
}

void count_boundaries(Count& count, const Model& model)
{
    count.banner("Boundary Information");
    count.labelled("Number of Systems");
    for (const System& system : model.systems) {
        count.free_text(30);
        count.labelled("Number of boundaries");
        if (!system.boundaries.items.empty()) {
            count.factors("Boundary Scale & Conversion Factors");
        }
        for (const SegmentSeries& boundary : system.boundaries.items) {
            count.labelled("Boundary Segment Number");
            count.labelled("Number of Time Pairs");
            count.free_series(boundary.series);
        }
    }
}

void count_loads(Count& count, const Model& model)
{
    count.banner("Load Information");
    count.record(74); // the option, its label and the file's caption
    if (model.nps_option > 0) {
        count.record(512);
    }
    count.labelled("Number of Systems");
    for (const System& system : model.systems) {
        count.free_text(30);
        count.labelled("Number of Loadings");
        if (!system.loads.items.empty()) {
            count.factors("Loading Scale & Conversion Factors");
        }
        for (const SegmentSeries& load : system.loads.items) {
            count.labelled("Loading Segment Number");
            count.labelled("Number of Time Pairs");
            count.records(load.series.times.size(), 25);
        }
    }
}

void count_time_functions(Count& count, const Model& model)
{
    count.banner("Time Functions");
    count.labelled("Number of Time Functions");
    for (const auto& type : model.time_function_types) {
        for (const TimeFunction& function : type.instances) {
            if (!function.used) {
                continue;
            }
            count.record(61);
            if (!function.series.times.empty()) {
                count.labelled("Number of Time Pairs");
                count.records(function.series.times.size(), 25);
            }
        }
    }
}

template <class Instance>
std::uint64_t used_instances(const std::vector<InstanceType<Instance>>& types)
{
    std::uint64_t used = 0;
    for (const auto& type : types) {
        for (const Instance& instance : type.instances) {
            used += instance.used ? 1 : 0;
        }
    }
    return used;
}

void count_parameters(Count& count, const Model& model)
{
    const std::uint64_t used = used_instances(model.parameter_types);
    count.banner("Segment Parameters");
    count.labelled("Number of Segments");
    count.labelled("Number of Segment Parameters");
    count.record(75); // the banner of the scale factors
    count.records(used, 97);
    count.record(81); // the banner of the assignments
    count.records(model.segments.size(), 17);
    count.records(model.segments.size() * used, 64);
}

void count_constants(Count& count, const Model& model)
{
    count.banner("Constants");
    count.labelled("Number of Constants");
    count.records(used_instances(model.constant_types), 104);
}

void count_initial_conditions(Count& count, const Model& model)
{
    count.banner("Initial Conditions");
    count.records(2, 5);
    for (const System& system : model.systems) {
        count.record(53);
        count.labelled("Solids Transport Field");
        count.labelled("Solids Density, g/mL");
        count.labelled("Maximum Allowed Concentration");
        count.record(std::string_view("  Seg   Conc   DissF").size());
        for (std::size_t s = 0; s < system.initial_conditions.size(); ++s) {
            const InitialCondition& initial = system.initial_conditions[s];
            count.record(free_integer_length(static_cast<std::int64_t>(s + 1)) +
                         free_real_length(initial.concentration) + free_real_length(initial.dissolved_fraction));
        }
    }
}

} // namespace

std::uint64_t free_real_length(float value)
{
    const double magnitude = std::abs(static_cast<double>(value));
    if (magnitude == 0) {
        return 10;
    }
    // From 0.09999995 on the value rounds to 0.100000, from 0.9999995 on to 1.00000; from 999999.5 on it would
    // need a seventh digit before the point.
    if (magnitude < 0.09999995 || magnitude >= 999999.5) {
        return 14;
    }
    return magnitude < 0.9999995 ? 10 : 9;
}

FileForecast forecast_file(const Model& model)
{
    Count count;
    count_system_information(count, model);
    count_segments(count, model);
    count_flow_paths(count, model);
    count_flows(count, model);
    count_exchanges(count, model);
    count_boundaries(count, model);
    count_loads(count, model);
    count_time_functions(count, model);
    count_parameters(count, model);
    count_constants(count, model);
    count_initial_conditions(count, model);
    return count.sum;
}

} // namespace velm
