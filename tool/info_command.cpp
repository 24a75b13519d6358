#include "tool/commands.hpp"
#include "tool/file_name.hpp"
#include "tool/model_file.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <map>
#include <numeric>

namespace velm {
namespace {

/// The beginning of a line: what it is about, in a column of its own.
std::ostream& line(std::string_view subject)
{
    return std::cout << std::left << std::setw(22) << subject << std::right;
}

/// Number and time range of a class of series.
struct SeriesSummary {
    std::uint64_t series = 0;
    std::uint64_t pairs = 0;
    float first = 0;
    float last = 0;

    void add(const TimeSeries& one)
    {
        ++series;
        if (one.times.empty()) {
            return;
        }
        const auto [earliest, latest] = std::minmax_element(one.times.begin(), one.times.end());
        first = pairs == 0 ? *earliest : std::min(first, *earliest);
        last = pairs == 0 ? *latest : std::max(last, *latest);
        pairs += one.times.size();
    }
    void print(std::string_view subject) const
    {
        line(subject) << "series: " << series << ", time pairs: " << pairs;
        if (pairs > 0) {
            std::cout << ", from " << first << " to " << last;
        }
        std::cout << '\n';
    }
};

void print_run(const Model& model)
{
    const auto triple = [](const std::array<std::int32_t, 3>& values) {
        return std::to_string(values[0]) + " " + std::to_string(values[1]) + " " + std::to_string(values[2]);
    };
    line("model type") << model.model_type << '\n';
    line("start") << "date " << triple(model.start_date) << ", time " << triple(model.start_time) << '\n';
    line("end time") << model.julian_end_time << '\n';
}

void print_segments(const Model& model)
{
    std::map<std::int32_t, std::size_t> types;
    for (const Segment& segment : model.segments) {
        ++types[segment.type];
    }
    line("segments") << model.segments.size();
    for (const auto& [type, number] : types) {
        std::cout << ", of type " << type << ": " << number;
    }
    std::cout << '\n';
}

void print_systems(const Model& model)
{
    line("systems") << model.systems.size() << '\n';
    for (std::size_t s = 0; s < model.systems.size(); ++s) {
        const System& system = model.systems[s];
        std::cout << std::setw(5) << s + 1 << "  " << printable_latin1(system.name) << " ("
                  << printable_latin1(system.tag) << "), boundaries: " << system.boundaries.items.size()
                  << ", loads: " << system.loads.items.size() << '\n';
    }
}

void print_flows(const Model& model)
{
    line("flow fields") << model.flow_fields.size() << '\n';
    for (std::size_t f = 0; f < model.flow_fields.size(); ++f) {
        SeriesSummary series;
        std::size_t paths = 0;
        for (const FlowFunction& function : model.flow_fields[f].functions) {
            series.add(function.series);
            paths += function.paths.size();
        }
        std::cout << std::setw(5) << f + 1 << "  functions: " << series.series << ", paths: " << paths
                  << ", time pairs: " << series.pairs << '\n';
    }
}

void print_exchanges(const Model& model)
{
    line("exchange fields") << model.exchange_fields.size() << '\n';
    for (std::size_t f = 0; f < model.exchange_fields.size(); ++f) {
        SeriesSummary series;
        std::size_t pairs = 0;
        for (const ExchangeFunction& function : model.exchange_fields[f].functions) {
            series.add(function.series);
            pairs += function.pairs.size();
        }
        std::cout << std::setw(5) << f + 1 << "  functions: " << series.series << ", segment pairs: " << pairs
                  << ", time pairs: " << series.pairs << '\n';
    }
}

template <class Instance>
void print_instances(std::string_view subject, const std::vector<InstanceType<Instance>>& types)
{
    std::size_t used = 0;
    std::size_t unused = 0;
    for (const auto& type : types) {
        for (const Instance& instance : type.instances) {
            ++(instance.used ? used : unused);
        }
    }
    line(subject) << "types: " << types.size() << ", used: " << used << ", unused: " << unused << '\n';
}

void print_series(const Model& model)
{
    SeriesSummary flows;
    SeriesSummary dispersions;
    SeriesSummary boundaries;
    SeriesSummary loads;
    SeriesSummary time_functions;
    const auto add_all = [](SeriesSummary& summary, const auto& list) {
        std::for_each(list.begin(), list.end(), [&](const auto& item) { summary.add(item.series); });
    };
    for (const FlowField& field : model.flow_fields) {
        add_all(flows, field.functions);
    }
    for (const ExchangeField& field : model.exchange_fields) {
        add_all(dispersions, field.functions);
    }
    for (const System& system : model.systems) {
        add_all(boundaries, system.boundaries.items);
        add_all(loads, system.loads.items);
    }
    for (const auto& type : model.time_function_types) {
        add_all(time_functions, type.instances);
    }
    flows.print("flow series");
    dispersions.print("dispersion series");
    boundaries.print("boundary series");
    loads.print("load series");
    time_functions.print("time-function series");
}

ExitCode print_info(const FileName& database)
{
    const Model model = read_model_file(database).model;
    line("model") << database << '\n';
    print_run(model);
    print_segments(model);
    print_systems(model);
    print_flows(model);
    print_exchanges(model);
    print_series(model);
    print_instances("time functions", model.time_function_types);
    print_instances("parameters", model.parameter_types);
    print_instances("constants", model.constant_types);
    return ExitCode::done;
}

} // namespace

Command info_command(CLI::App& tool)
{
    auto database = std::make_shared<FileName>();
    CLI::App* const arguments = tool.add_subcommand("info", "Print what a model has");
    arguments->add_option("MODEL", *database, "Model database or input file")->required();
    arguments->footer("Example:\n"
                      "  velm info estuary.db\n\n"
                      "Times are those of the database, most often days from the start.");
    return {arguments, [database] { return print_info(*database); }};
}

} // namespace velm
