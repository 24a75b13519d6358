// Writes one workload as whole files, by each method in turn, round after round, and prints a line of JSON for each.
#include "bench/bench_host.hpp"
#include "bench/measuring.hpp"
#include "bench/peers.h"
#include "bench/segment_arrays.hpp"
#include "bench/workloads.hpp"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace velm::bench {
namespace {

/// A language's way to write a file.
struct FileWriter {
    std::function<void(const std::string& path)> open;
    void (*names)(const char* names, std::int32_t count);
    void (*rows)(const std::int32_t* integers, const float* reals, std::int32_t count);
    void (*parameters)(const float* values, std::int32_t count);
    void (*pairs)(const float* times, const float* values, std::int32_t count);
    void (*free_pairs)(const float* times, const float* values, std::int32_t count);
    void (*close)();
};

const FileWriter in_c{[](const std::string& path) { c_open(path.c_str()); },
                      c_names,
                      c_rows,
                      c_parameters,
                      c_pairs,
                      c_free_pairs,
                      c_close};
const FileWriter in_fortran{
    [](const std::string& path) { fortran_open(path.data(), static_cast<std::int32_t>(path.size())); },
    fortran_names,
    fortran_rows,
    fortran_parameters,
    fortran_pairs,
    fortran_free_pairs,
    fortran_close};

template <class Write>
void write_series(Write write, const TimeSeries& series)
{
    write(series.times.data(), series.values.data(), static_cast<std::int32_t>(series.times.size()));
}

/// All records but captions and counts, which are few.
void write_file(const FileWriter& writer, const std::string& path, const Model& model, const SegmentArrays& segments)
{
    writer.open(path);
    writer.names(segments.names.data(), segments.count);
    writer.rows(segments.integers.data(), segments.reals.data(), segments.count);
    for (const FlowField& field : model.flow_fields) {
        for (const FlowFunction& function : field.functions) {
            write_series(writer.free_pairs, function.series);
        }
    }
    for (const System& system : model.systems) {
        for (const SegmentSeries& boundary : system.boundaries.items) {
            write_series(writer.free_pairs, boundary.series);
        }
    }
    for (const System& system : model.systems) {
        for (const SegmentSeries& load : system.loads.items) {
            write_series(writer.pairs, load.series);
        }
    }
    if (!segments.parameters.empty()) {
        writer.parameters(segments.parameters.data(), segments.count);
    }
    writer.close();
}

struct Method {
    const char* name;
    std::function<void()> write;
};

int run(const std::string& plug_in, const std::string& requests_only, const std::string& workload_name,
        const std::string& path, int rounds)
{
    const Model model = workload(workload_name);
    const SegmentArrays segments(model);
    const auto importexport = importexport_of(plug_in);
    const auto only_requests = importexport_of(requests_only);
    serve(model, path);
    importexport();
    const std::size_t size = size_of_file(path);

    const Method methods[] = {{"velm", importexport},
                              {"requests", only_requests},
                              {"blocks", [&] { write_blocks(path, size); }},
                              {"Fortran", [&] { write_file(in_fortran, path, model, segments); }},
                              {"C", [&] { write_file(in_c, path, model, segments); }}};
    for (int round = 0; round < rounds; ++round) {
        for (const Method& method : methods) {
            double best = 0;
            // the peers take long enough to be measured once
            const int tries = method.name == std::string("Fortran") || method.name == std::string("C") ? 1 : 3;
            for (int i = 0; i < tries; ++i) {
                unlink(path.c_str());
                const double seconds = seconds_of(method.write);
                best = i == 0 ? seconds : std::min(best, seconds);
            }
            std::printf("{\"method\": \"%s\", \"round\": %d, \"seconds\": %.9f, \"bytes\": %zu}\n", method.name, round,
                        best, size_of_file(path));
            std::fflush(stdout);
        }
    }
    unlink(path.c_str());
    return 0;
}

} // namespace
} // namespace velm::bench

int main(int argc, char** argv)
{
    if (argc != 6) {
        std::fputs("Usage: bench_exports PLUG_IN REQUESTS_ONLY WORKLOAD OUTPUT ROUNDS\n", stderr);
        return 2;
    }
    return velm::bench::run(argv[1], argv[2], argv[3], argv[4], std::stoi(argv[5]));
}
