#pragma once

#include <cstddef>
#include <cstdio>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

namespace velm::bench {

/// One way to do what is measured.
struct Method {
    const char* name;
    std::function<void()> run;
};

/// The processor's time, the system's included: what others do on the machine does not count.
template <class Work>
double seconds_of(const Work& work)
{
    const auto processor = [] {
        timespec now{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
        return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
    };
    const double start = processor();
    work();
    return processor() - start;
}

/// A line of JSON for run.py: in this round the method took so long for one of what is measured.
inline void tell(const std::string& what, const char* method, double seconds)
{
    std::printf("{\"what\": \"%s\", \"method\": \"%s\", \"seconds\": %.12g}\n", what.c_str(), method, seconds);
    std::fflush(stdout);
}

/// Reals in the fields and forms that records have, of values as models have them and of random patterns. Throws
/// std::runtime_error when two methods do not render the same numbers.
void measure_reals(int rounds);

/// A workload as a whole file, by each method in turn: the plug-in, its requests alone, its bytes alone, Fortran.
void measure_exports(const std::string& plug_in, const std::string& requests_only, const std::string& workload,
                     const std::string& path, int rounds);

/// All that is said of a model's water and series, once, against loading the model from its database.
void measure_water(const std::string& database, int rounds);

} // namespace velm::bench
