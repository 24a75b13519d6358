#pragma once

#include "json_text/json_text.hpp"
#include "model/model.hpp"
#include "tool/files/model_file.hpp"
#include "water_balance/run_dates.hpp"
#include "water_balance/water_balance.hpp"

#include <ostream>
#include <string>

namespace velm {

/// What velm info says of a file; docs/info.md names what the JSON has.
struct ModelInfo {
    /// `read` outlives it.
    ModelInfo(std::string name, const ModelFile& read)
        : file(std::move(name)), database(read.kind == FileKind::database), errors(read.errors), dates(read.model),
          water(read.model), elsewhere(flows_are_elsewhere(read.model))
    {
    }
    [[nodiscard]] const Model& model() const { return water.model(); }

    std::string file;
    bool database;
    std::uint64_t errors; ///< places of an input file that cannot be read
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
