#include "model_store/load_parts.hpp"

namespace velm {

namespace {

void read_times(TableReader& row, Model& model)
{
    model.start_date = {row.integer("start_date_1"), row.integer("start_date_2"), row.integer("start_date_3")};
    model.start_time = {row.integer("start_time_1"), row.integer("start_time_2"), row.integer("start_time_3")};
    model.skip_date = {row.integer("skip_date_1"), row.integer("skip_date_2"), row.integer("skip_date_3")};
    model.skip_time = {row.integer("skip_time_1"), row.integer("skip_time_2"), row.integer("skip_time_3")};
    model.julian_end_time = row.real("julian_end_time");
}

void read_options(TableReader& row, Model& model)
{
    model.mass_balance_table_output = row.integer("mass_balance_table_output");
    model.solution_technique = row.integer("solution_technique");
    model.negative_solution = row.integer("negative_solution");
    model.restart = row.integer("restart");
    model.time_optimization = row.integer("time_optimization");
    model.water_quality_linkage = row.integer("water_quality_linkage");
    model.topt_factor = row.real("topt_factor");
    model.maximum_time_step = row.real("maximum_time_step");
    model.minimum_time_step = row.real("minimum_time_step");
    model.print_interval = row.real("print_interval");
}

} // namespace

void load_run(LoadState& load, Model& model)
{
    constexpr std::size_t longest_path = 512;
    TableReader row(load, "model");
    if (!row.next()) {
        load.problems.add({"model", "", "", "", "there is no row",
                           "run INSERT INTO model DEFAULT VALUES and set what the run needs"});
        return;
    }
    model.model_type = row.integer("model_type");
    read_times(row, model);
    read_options(row, model);
    model.bed_volume_option = row.integer("bed_volume_option");
    model.bed_compaction_time_step = row.real("bed_compaction_time_step");
    model.volume_scale_factor = row.real("volume_scale_factor");
    model.volume_conversion_factor = row.real("volume_conversion_factor");
    model.hydrodynamic_file = row.text("hydrodynamic_file", longest_path);
    model.nps_option = row.integer("nps_option");
    model.nps_file = row.text("nps_file", longest_path);
    if (row.next()) {
        row.report("", "", "there is more than one row", "keep the row of number 1 only");
    }
}

} // namespace velm
