// Models in databases: fills one with a workload, or exports one through the headless host.
#include "bench/measuring.hpp"
#include "bench/workloads.hpp"
#include "headless_host/headless_host.hpp"
#include "model_store/model_store.hpp"

#include <cstdio>
#include <string>
#include <vector>

namespace velm::bench {
namespace {

void fill(const std::string& workload_name, const std::string& database)
{
    const Model model = workload(workload_name);
    save_model(model, database);
    std::printf("{\"rows\": %zu, \"data\": %zu}\n", row_count(model), data_size(model));
}

/// Seconds of writing `path` anew `repeats` times.
template <class Write>
double seconds_of_each(const std::string& path, int repeats, Write write)
{
    double seconds = 0;
    for (int i = 0; i < repeats; ++i) {
        unlink(path.c_str());
        seconds += seconds_of(write);
    }
    return seconds;
}

/// Prints the seconds of one load, and of `repeats` exports by each library and of writing their bytes alone.
void export_again_and_again(const std::string& plug_in, const std::string& requests_only, const std::string& database,
                            const std::string& path, int repeats)
{
    Model model;
    const double loading = seconds_of([&] { model = load_model(database); });
    HeadlessHost host(model, path);
    velm_host_attach(&HeadlessHost::answer, &host);
    const double requests = seconds_of_each(path, repeats, importexport_of(requests_only));
    const double exports = seconds_of_each(path, repeats, importexport_of(plug_in));
    const std::size_t size = size_of_file(path);
    const double blocks = seconds_of_each(path, repeats, [&] { write_blocks(path, size); });
    velm_host_attach(nullptr, nullptr);
    unlink(path.c_str());
    if (host.fault_count() != 0) {
        throw std::runtime_error(host.faults().front());
    }
    std::printf("{\"loading\": %.9f, \"velm\": %.9f, \"requests\": %.9f, \"blocks\": %.9f, \"exports\": %d, "
                "\"bytes\": %zu}\n",
                loading, exports, requests, blocks, repeats, size);
}

} // namespace
} // namespace velm::bench

int main(int argc, char** argv)
{
    if (argc == 4 && argv[1] == std::string("fill")) {
        velm::bench::fill(argv[2], argv[3]);
    } else if (argc == 7 && argv[1] == std::string("export")) {
        velm::bench::export_again_and_again(argv[2], argv[3], argv[4], argv[5], std::stoi(argv[6]));
    } else {
        std::fputs("Usage: bench_database fill WORKLOAD DATABASE\n"
                   "       bench_database export PLUG_IN REQUESTS_ONLY DATABASE OUTPUT REPEATS\n",
                   stderr);
        return 2;
    }
}
