#include "bench/bench_host.hpp"
#include "bench/fortran_peer.h"
#include "bench/measuring.hpp"
#include "bench/workloads.hpp"

#include <algorithm>
#include <cstdint>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <unistd.h>

namespace velm::bench {
namespace {

/// The plug-in's procedure, from a library loaded as a host loads it. It stays loaded.
auto importexport_of(const std::string& library)
{
    void* const handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
    void* const procedure = handle != nullptr ? dlsym(handle, "importexport") : nullptr;
    if (procedure == nullptr) {
        throw std::runtime_error(dlerror());
    }
    return reinterpret_cast<void (*)()>(procedure);
}

/// `size` bytes to a new file as fast as the system takes them: blocks of the size that an export hands on.
void write_blocks(const std::string& path, std::size_t size)
{
    static const std::vector<char> block(std::size_t{256} * 1024, '5');
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    while (size != 0) {
        const ssize_t written = write(file, block.data(), std::min(size, block.size()));
        if (written <= 0) {
            throw std::runtime_error("cannot write " + path);
        }
        size -= static_cast<std::size_t>(written);
    }
    if (close(file) != 0) {
        throw std::runtime_error("cannot close " + path);
    }
}

/// The segments as a program holds them that writes its own files: plain arrays in the order of the file.
struct SegmentArrays {
    std::int32_t count = 0;
    std::string names;
    std::vector<std::int32_t> integers;
    std::vector<float> reals;
    std::vector<std::vector<float>> parameters; ///< of each segment

    explicit SegmentArrays(const Model& model) : parameters(model.segments.size())
    {
        for (const Segment& s : model.segments) {
            ++count;
            names.append(s.name).append(40 - s.name.size(), ' ');
            integers.insert(integers.end(), {count, s.bottom_segment, s.type, s.flow_option});
            reals.insert(reals.end(),
                         {s.volume, s.velocity_multiplier, s.velocity_exponent, s.depth_multiplier, s.depth_exponent,
                          s.length, s.slope, s.width, s.roughness, s.minimum_depth, s.initial_surface_elevation,
                          s.bottom_elevation, s.side_slope, s.initial_depth, s.weir_height, s.weir_type});
        }
        for (const auto& type : model.parameter_types) {
            for (const Parameter& parameter : type.instances) {
                for (std::size_t i = 0; i < parameters.size(); ++i) {
                    parameters[i].push_back(parameter.values[i]);
                }
            }
        }
    }
};

void write_series(void (*write)(const float*, const float*, std::int32_t), const TimeSeries& series)
{
    write(series.times.data(), series.values.data(), static_cast<std::int32_t>(series.times.size()));
}

/// All records but captions and counts, which are few.
void write_in_fortran(const std::string& path, const Model& model, const SegmentArrays& segments)
{
    fortran_open(path.data(), static_cast<std::int32_t>(path.size()));
    fortran_names(segments.names.data(), segments.count);
    fortran_rows(segments.integers.data(), segments.reals.data(), segments.count);
    for (const FlowField& field : model.flow_fields) {
        for (const FlowFunction& function : field.functions) {
            write_series(fortran_free_pairs, function.series);
        }
    }
    for (const System& system : model.systems) {
        for (const SegmentSeries& boundary : system.boundaries.items) {
            write_series(fortran_free_pairs, boundary.series);
        }
        for (const SegmentSeries& load : system.loads.items) {
            write_series(fortran_pairs, load.series);
        }
    }
    for (std::int32_t segment = 1; segment <= segments.count && !model.parameter_types.empty(); ++segment) {
        const std::vector<float>& values = segments.parameters[static_cast<std::size_t>(segment) - 1];
        fortran_parameters(values.data(), segment, static_cast<std::int32_t>(values.size()));
    }
    fortran_close();
}

} // namespace

void measure_exports(const std::string& plug_in, const std::string& requests_only, const std::string& workload_name,
                     const std::string& path, int rounds)
{
    const Model model = workload(workload_name);
    const SegmentArrays segments(model);
    serve(model, path);
    const auto importexport = importexport_of(plug_in);
    importexport();
    const std::size_t size = std::filesystem::file_size(path);
    const Method methods[] = {{"velm", importexport},
                              {"requests", importexport_of(requests_only)},
                              {"bytes", [&] { write_blocks(path, size); }},
                              {"Fortran", [&] { write_in_fortran(path, model, segments); }}};
    for (int round = 0; round < rounds; ++round) {
        for (const Method& method : methods) {
            const bool slow = method.name == std::string("Fortran"); // enough to be measured once
            double best = 1e9;
            for (int i = 0; i < (slow ? 1 : 3); ++i) {
                std::filesystem::remove(path);
                best = std::min(best, seconds_of(method.run));
            }
            tell(workload_name, method.name, best);
            const double part = static_cast<double>(std::filesystem::file_size(path)) / static_cast<double>(size);
            if (slow && (part < 0.9 || part > 1.4)) { // its lines end otherwise, and free pairs stand in columns
                throw std::runtime_error("Fortran writes another file than velm");
            }
        }
    }
    std::filesystem::remove(path);
}

} // namespace velm::bench
