#include "bench/measuring.hpp"
#include "model_store/model_store.hpp"
#include "water_balance/connections.hpp"
#include "water_balance/series_facts.hpp"
#include "water_balance/series_list.hpp"
#include "water_balance/stays.hpp"
#include "water_balance/volumes.hpp"

namespace velm::bench {

void measure_water(const std::string& database, int rounds)
{
    for (int round = 0; round < rounds; ++round) {
        Model model;
        tell("water balance", "loading", seconds_of([&] { model = load_model(database); }));
        std::size_t kept = 0;
        tell("water balance", "velm", seconds_of([&] {
                 const WaterBalance water(model);
                 kept += volume_ranges(water).size() + stays(water).size() + connections_of(model).size();
                 for (const SeriesItem& item : all_series(model)) {
                     kept += facts_of(*item.series, item.factor).gaps;
                 }
             }));
        if (kept < model.segments.size()) { // so that no compiler leaves it out
            tell("nothing", "velm", 0);
        }
    }
}

} // namespace velm::bench
