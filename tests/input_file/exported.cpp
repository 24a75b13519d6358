#include "tests/input_file/exported.hpp"

#include "headless_host/headless_host.hpp"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

#include <gtest/gtest.h>
#include <unistd.h>

extern "C" void importexport();

namespace velm {

namespace fs = std::filesystem;

std::string exported(const Model& model)
{
    static const fs::path file = fs::path(testing::TempDir()) / ("velm-exported-" + std::to_string(getpid()));
    HeadlessHost host(model, file.string());
    velm_host_attach(&HeadlessHost::answer, &host);
    importexport();
    velm_host_attach(nullptr, nullptr);
    EXPECT_TRUE(host.export_completed());
    EXPECT_EQ(requests_of_an_export(model), host.requests());
    EXPECT_EQ(host.fault_count(), 0U) << host.faults().front();
    std::string bytes = bytes_of(file);
    fs::remove(file);
    return bytes;
}

InputFile read_text(const std::string& bytes, const ReadOptions& options)
{
    std::istringstream input(bytes);
    return read_input_file(input, options);
}

std::string problems_of(const InputFile& file)
{
    std::string lines;
    for (const InputProblem& problem : file.problems) {
        lines += problem.text("file") + '\n';
    }
    return lines;
}

std::string bytes_of(const fs::path& file)
{
    std::ifstream input(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(input), {}};
}

std::vector<fs::path> golden_files()
{
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(VELM_GOLDEN_FILES)) {
        if (entry.path().extension() == ".inp") {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

namespace {

class Maker {
public:
    explicit Maker(std::mt19937& random) : random_(random) {}

    std::int32_t integer(std::int32_t least, std::int32_t most)
    {
        return std::uniform_int_distribution<std::int32_t>(least, most)(random_);
    }
    /// Of at most five digits and two decimals, so that it fits the field and is the nearest single.
    float real() { return static_cast<float>(integer(-9999, 9999)) / (integer(0, 1) == 0 ? 10.0F : 100.0F); }
    /// Of six digits at most, small as only a row can say it.
    float any_real() { return static_cast<float>(integer(-999'999, 999'999) * (integer(0, 1) == 0 ? 1e-34 : 1e-3)); }

    /// Does not end in a blank: a host that serves it adds some.
    std::string text(int longest)
    {
        const std::string_view alphabet =
            integer(0, 2) == 0 ? std::string_view("ab \0\r\n\xFF", 7) : "Reach of the r\xEDo ";
        std::string text(static_cast<std::size_t>(integer(0, longest)), ' ');
        for (char& character : text) {
            character = alphabet[static_cast<std::size_t>(integer(0, static_cast<int>(alphabet.size()) - 1))];
        }
        text.resize(text.find_last_not_of(' ') + 1);
        if (text.ends_with('\0') && text.size() == static_cast<std::size_t>(longest)) {
            text.back() = 'z'; // a NUL there is written without the host having given one
        }
        return text;
    }

    TimeSeries series(bool in_row)
    {
        TimeSeries pairs;
        for (int count = integer(-2, 6); count > 0; --count) {
            pairs.times.push_back(in_row ? any_real() : real());
            pairs.values.push_back(in_row ? any_real() : real());
        }
        return pairs;
    }

    template <class Item, class Make>
    void fill(std::vector<Item>& items, int most, const Make& make)
    {
        for (int count = integer(0, most); count > 0; --count) {
            make(items.emplace_back());
        }
    }

    template <class Instance, class Make>
    void fill_types(std::vector<InstanceType<Instance>>& types, const Make& make)
    {
        const std::int32_t first = integer(-90, 900);
        fill(types, 4, [&](InstanceType<Instance>& type) {
            type.isc = first + static_cast<std::int32_t>(types.size());
            fill(type.instances, 3, [&](Instance& instance) {
                instance.used = integer(0, 2) != 0;
                if (instance.used) {
                    make(instance);
                }
            });
            make(type.instances.emplace_back()); // the last is in use, and only such a type is in the file
            type.instances.back().used = true;
        });
    }

private:
    std::mt19937& random_;
};

void add_segments(Maker& make, Model& model)
{
    make.fill(model.segments, 5, [&](Segment& segment) {
        segment.name = make.text(40);
        segment.type = make.integer(-999, 9999);
        segment.flow_option = make.integer(2, 3);
        for (float Segment::*field :
             {&Segment::volume, &Segment::velocity_multiplier, &Segment::velocity_exponent, &Segment::depth_multiplier,
              &Segment::depth_exponent, &Segment::slope, &Segment::length, &Segment::width, &Segment::roughness,
              &Segment::minimum_depth, &Segment::initial_surface_elevation, &Segment::bottom_elevation,
              &Segment::side_slope, &Segment::initial_depth, &Segment::weir_height, &Segment::weir_type}) {
            segment.*field = make.real();
        }
    });
    for (Segment& segment : model.segments) {
        segment.bottom_segment = make.integer(0, static_cast<std::int32_t>(model.segments.size()));
    }
}

void add_set(Maker& make, SegmentSeriesSet& set, std::int32_t segments, bool in_row)
{
    if (segments == 0) {
        return;
    }
    make.fill(set.items, 3, [&](SegmentSeries& item) {
        item.segment = make.integer(1, segments);
        item.series = make.series(in_row);
    });
    if (!set.items.empty()) {
        set.scale_factor = make.real();
        set.conversion_factor = make.real();
    }
}

void add_systems(Maker& make, Model& model)
{
    const auto segments = static_cast<std::int32_t>(model.segments.size());
    make.fill(model.systems, 4, [&](System& system) {
        system.name = make.text(30);
        system.tag = make.text(5);
        system.solids_transport_field = make.integer(-9, 9);
        system.solids_density = make.real();
        system.maximum_concentration = make.real();
        for (std::int32_t segment = 0; segment < segments; ++segment) {
            system.initial_conditions.push_back({make.any_real(), make.any_real()});
        }
        add_set(make, system.boundaries, segments, true);
        add_set(make, system.loads, segments, false);
    });
}

void add_flows(Maker& make, Model& model)
{
    const auto segments = static_cast<std::int32_t>(model.segments.size());
    make.fill(model.flow_fields, 8, [&](FlowField& field) {
        make.fill(field.functions, 2, [&](FlowFunction& function) {
            function.description = make.text(80);
            make.fill(function.paths, 3, [&](FlowPath& path) {
                path = {make.integer(0, segments), make.integer(0, segments), make.real()};
            });
            function.series = make.series(true);
        });
        if (!field.functions.empty()) {
            field.scale_factor = make.real();
        }
    });
    make.fill(model.exchange_fields, 4, [&](ExchangeField& field) {
        make.fill(field.functions, 2, [&](ExchangeFunction& function) {
            function.description = make.text(80);
            make.fill(function.pairs, 3, [&](ExchangePair& pair) {
                pair = {make.integer(0, segments), make.integer(0, segments), make.any_real(), make.any_real()};
            });
            function.series = make.series(true);
        });
        if (!field.functions.empty()) {
            field.conversion_factor = make.real();
        }
    });
}

void add_types(Maker& make, Model& model)
{
    constexpr int shown = 40;
    make.fill_types(model.time_function_types, [&](TimeFunction& function) {
        function.description = make.text(shown);
        function.series = make.series(false);
    });
    make.fill_types(model.parameter_types, [&](Parameter& parameter) {
        parameter.description = make.text(shown);
        parameter.scale_factor = make.real();
    });
    for (InstanceType<Parameter>& type : model.parameter_types) {
        for (Parameter& parameter : type.instances) {
            for (std::size_t segment = 0; segment < model.segments.size(); ++segment) {
                parameter.values.push_back(parameter.used ? make.real() : 0);
            }
        }
    }
    make.fill_types(model.constant_types, [&](Constant& constant) {
        constant.description = make.text(shown);
        constant.value = make.real();
    });
}

} // namespace

Model random_model(std::mt19937& random)
{
    Maker make(random);
    Model model;
    model.model_type = make.integer(-9999, 99999);
    model.start_date = {make.integer(0, 99999), make.integer(0, 99999), make.integer(0, 99999)};
    model.skip_time = {make.integer(0, 99999), make.integer(0, 99999), make.integer(0, 99999)};
    model.julian_end_time = static_cast<float>(make.integer(-999, 999));
    model.restart = make.integer(-9, 9);
    model.topt_factor = make.real();
    model.minimum_time_step = static_cast<float>(make.integer(-9999, 9999)) / 1e4F;
    model.maximum_time_step = static_cast<float>(make.integer(0, 999)) / 10.0F;
    model.print_interval = make.real();
    model.bed_compaction_time_step = make.real();
    model.volume_scale_factor = make.real();
    model.nps_option = make.integer(-1, 2);
    model.nps_file = model.nps_option > 0 ? make.text(512) : "";
    add_segments(make, model);
    add_systems(make, model);
    add_flows(make, model);
    if (!model.segments.empty() && model.segments[0].flow_option == 3 && !model.flow_fields.empty()) {
        model.hydrodynamic_file = make.text(512);
    }
    add_types(make, model);
    return model;
}

} // namespace velm
