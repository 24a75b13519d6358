#pragma once

#include "json_text/json_text.hpp"
#include "model/model.hpp"
#include "water_balance/run_dates.hpp"
#include "water_balance/water_balance.hpp"

#include <ostream>
#include <string>

namespace velm {

/// What velm info says of a file; docs/info.md names what the JSON has.
struct ModelInfo {
    /// The model outlives it.
    ModelInfo(std::string name, bool is_database, const Model& model)
        : file(std::move(name)), database(is_database), dates(model), water(model),
          elsewhere(flows_are_elsewhere(model))
    {
    }
    [[nodiscard]] const Model& model() const { return water.model(); }

    std::string file;
    bool database;
    RunDates dates;
    WaterBalance water;
    bool elsewhere; ///< the flows are in another file, so nothing is said of water
};

struct InfoTables {
    bool series = false;
    bool segments = false;
};

void print_info(std::ostream& out, const ModelInfo& info, const InfoTables& tables);
/// As an object.
void put_info(JsonText& json, const ModelInfo& info);

} // namespace velm
