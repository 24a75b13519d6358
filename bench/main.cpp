// The programs that run.py drives, in one: each prints lines of JSON.
#include "bench/measuring.hpp"
#include "bench/workloads.hpp"
#include "model_store/model_store.hpp"

#include <exception>

namespace {

using namespace velm::bench;

int run(const std::vector<std::string>& words)
{
    if (words.size() == 2 && words[0] == "reals") {
        measure_reals(std::stoi(words[1]));
    } else if (words.size() == 6 && words[0] == "exports") {
        measure_exports(words[1], words[2], words[3], words[4], std::stoi(words[5]));
    } else if (words.size() == 3 && words[0] == "water") {
        measure_water(words[1], std::stoi(words[2]));
    } else if (words.size() == 4 && words[0] == "fill") {
        const velm::Model model = workload(words[1], std::stoul(words[2]));
        velm::save_model(model, words[3]);
        std::printf("{\"reals\": %zu}\n", number_of_reals(model));
    } else {
        std::fputs("Usage: measure reals ROUNDS\n"
                   "       measure exports PLUG_IN REQUESTS_ONLY WORKLOAD OUTPUT ROUNDS\n"
                   "       measure water DATABASE ROUNDS\n"
                   "       measure fill WORKLOAD ROWS DATABASE\n",
                   stderr);
        return 2;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        return run({argv + 1, argv + argc});
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "measure: %s\n", failure.what());
        return 1;
    }
}
