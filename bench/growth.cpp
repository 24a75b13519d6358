// Exports a file of about MEGABYTES and prints its time per byte, and what the plug-in's memory has grown to.
#include "bench/bench_host.hpp"
#include "bench/measuring.hpp"
#include "bench/workloads.hpp"

#include <algorithm>
#include <cstdio>
#include <string>

namespace velm::bench {
namespace {

constexpr std::size_t bytes_of_a_pair = 27; // (F10.4,5x,F10.4) and the line's end
constexpr std::size_t tables_and_buffer = std::size_t{2} * 100'000 * sizeof(float) + std::size_t{256} * 1024;

void run(const std::string& plug_in, std::size_t megabytes, const std::string& path, int repeats)
{
    const Model model = model_of_pairs(megabytes * 1'000'000 / bytes_of_a_pair);
    const auto importexport = importexport_of(plug_in);
    serve(model, path);
    const std::size_t before = peak_memory();
    importexport();
    const std::size_t grown = peak_memory() - before;

    std::vector<double> seconds;
    const std::size_t size = size_of_file(path);
    for (int i = 0; i < repeats; ++i) {
        unlink(path.c_str());
        seconds.push_back(seconds_of(importexport));
    }
    unlink(path.c_str());
    std::ranges::sort(seconds);
    std::printf("{\"bytes\": %zu, \"seconds\": %.9f, \"grown\": %zu, \"tables_and_buffer\": %zu}\n", size,
                seconds[seconds.size() / 2], grown, tables_and_buffer);
}

} // namespace
} // namespace velm::bench

int main(int argc, char** argv)
{
    if (argc != 5) {
        std::fputs("Usage: bench_growth PLUG_IN MEGABYTES OUTPUT REPEATS\n", stderr);
        return 2;
    }
    velm::bench::run(argv[1], std::stoul(argv[2]), argv[3], std::stoi(argv[4]));
}
