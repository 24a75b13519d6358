#pragma once

#include <benchmark/benchmark.h>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace velm::bench {

/// Values of one run of a measurement: with their texts they fit the second-level cache, and are too many for the
/// processor to foresee their branches.
inline constexpr std::size_t value_count = 16'384;

/// Renders all values of a measurement into its text.
using RenderAll = std::function<void(char* text)>;

/// Measures `render` as "what/input/method" over `items` values or records, which take at most `room` characters.
inline void add_measurement(const std::string& what, const std::string& input, const std::string& method,
                            std::size_t items, std::size_t room, RenderAll render)
{
    const std::string name = what + '/' + input + '/' + method;
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        std::vector<char> text(room);
        for (auto _ : state) {
            render(text.data());
            benchmark::DoNotOptimize(text.data());
            benchmark::ClobberMemory();
        }
        state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(items));
    });
}

/// `kinds` are the reals of a model by kind of column. Throws std::runtime_error when two methods do not render the
/// same numbers.
void add_fields(const std::vector<std::vector<float>>& kinds);
/// With values of the workloads.
void add_records();

} // namespace velm::bench
