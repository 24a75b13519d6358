// Fields and records, measured by Google Benchmark. The first argument is a model database that lends its values.
#include "bench/model_values.hpp"
#include "bench/rendering.hpp"
#include "model_store/model_store.hpp"

#include <cstdio>

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::fputs("Usage: bench_rendering DATABASE [OPTION OF GOOGLE BENCHMARK ...]\n", stderr);
        return 2;
    }
    velm::bench::add_fields(velm::bench::reals_of(velm::load_model(argv[1])));
    velm::bench::add_records();
    --argc;
    benchmark::Initialize(&argc, argv + 1);
    benchmark::RunSpecifiedBenchmarks();
}
