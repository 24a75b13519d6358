#include "model_store/load_model.hpp"
#include "model_store/new_file.hpp"
#include "model_store/numbered_rows.hpp"
#include "model_store/row_writer.hpp"
#include "model_store/table_writer.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velm {

namespace {

void save_run(const Database& database, const Model& model)
{
    TableWriter(database, "model")
        .insert(1, model.model_type, model.start_date[0], model.start_date[1], model.start_date[2], model.start_time[0],
                model.start_time[1], model.start_time[2], model.skip_date[0], model.skip_date[1], model.skip_date[2],
                model.skip_time[0], model.skip_time[1], model.skip_time[2], model.julian_end_time,
                model.mass_balance_table_output, model.solution_technique, model.negative_solution, model.restart,
                model.time_optimization, model.water_quality_linkage, model.topt_factor, model.maximum_time_step,
                model.minimum_time_step, model.print_interval, model.bed_volume_option, model.bed_compaction_time_step,
                model.volume_scale_factor, model.volume_conversion_factor, model.hydrodynamic_file, model.nps_option,
                model.nps_file);
}

void save_segments(const Database& database, const Model& model)
{
    TableWriter row(database, "segment");
    for (std::size_t number = 1; const Segment& segment : model.segments) {
        row.insert(number++, segment.name, segment.bottom_segment, segment.type, segment.flow_option, segment.volume,
                   segment.velocity_multiplier, segment.velocity_exponent, segment.depth_multiplier,
                   segment.depth_exponent, segment.slope, segment.length, segment.width, segment.roughness,
                   segment.minimum_depth, segment.initial_surface_elevation, segment.bottom_elevation,
                   segment.side_slope, segment.initial_depth, segment.weir_height, segment.weir_type);
    }
}

void save_segment_series(const Database& database, const Model& model, const std::string& table,
                         SegmentSeriesSet System::*set)
{
    TableWriter item_row(database, table);
    for (std::size_t system_number = 1; const System& system : model.systems) {
        for (std::size_t number = 1; const SegmentSeries& item : (system.*set).items) {
            item_row.insert(system_number, number, item.segment);
            ++number;
        }
        ++system_number;
    }
}

void save_systems(const Database& database, const Model& model)
{
    TableWriter system_row(database, "system");
    for (std::size_t number = 1; const System& system : model.systems) {
        system_row.insert(number, system.name, system.tag, system.boundaries.scale_factor,
                          system.boundaries.conversion_factor, system.loads.scale_factor,
                          system.loads.conversion_factor, system.solids_transport_field, system.solids_density,
                          system.maximum_concentration);
        ++number;
    }
    save_segment_series(database, model, "boundary", &System::boundaries);
    save_segment_series(database, model, "load", &System::loads);
}

void save_flows(const Database& database, const Model& model)
{
    TableWriter field_row(database, "flow_field");
    TableWriter function_row(database, "flow_function");
    TableWriter path_row(database, "flow_path");
    for (std::size_t field_number = 1; const FlowField& field : model.flow_fields) {
        field_row.insert(field_number, field.scale_factor, field.conversion_factor);
        for (std::size_t number = 1; const FlowFunction& function : field.functions) {
            function_row.insert(field_number, number, function.description);
            for (std::size_t path_number = 1; const FlowPath& path : function.paths) {
                path_row.insert(field_number, number, path_number++, path.first_segment, path.second_segment,
                                path.fraction);
            }
            ++number;
        }
        ++field_number;
    }
}

void save_exchanges(const Database& database, const Model& model)
{
    TableWriter field_row(database, "exchange_field");
    TableWriter function_row(database, "exchange_function");
    TableWriter segments_row(database, "exchange_pair");
    for (std::size_t field_number = 1; const ExchangeField& field : model.exchange_fields) {
        field_row.insert(field_number, field.scale_factor, field.conversion_factor);
        for (std::size_t number = 1; const ExchangeFunction& function : field.functions) {
            function_row.insert(field_number, number, function.description);
            for (std::size_t pair_number = 1; const ExchangePair& pair : function.pairs) {
                segments_row.insert(field_number, number, pair_number++, pair.first_segment, pair.second_segment,
                                    pair.area, pair.length);
            }
            ++number;
        }
        ++field_number;
    }
}

void save_time_functions(const Database& database, const Model& model)
{
    TableWriter type_row(database, "time_function_type");
    TableWriter function_row(database, "time_function");
    for (std::size_t type_number = 1; const auto& type : model.time_function_types) {
        type_row.insert(type_number, type.isc);
        for (std::size_t number = 1; const TimeFunction& function : type.instances) {
            function_row.insert(type_number, number, function.used, function.description);
            ++number;
        }
        ++type_number;
    }
}

void save_parameters(const Database& database, const Model& model)
{
    TableWriter type_row(database, "parameter_type");
    TableWriter parameter_row(database, "parameter");
    for (std::size_t type_number = 1; const auto& type : model.parameter_types) {
        type_row.insert(type_number, type.isc);
        for (std::size_t number = 1; const Parameter& parameter : type.instances) {
            parameter_row.insert(type_number, number, parameter.used, parameter.description, parameter.scale_factor);
            ++number;
        }
        ++type_number;
    }
}

void save_constants(const Database& database, const Model& model)
{
    TableWriter type_row(database, "constant_type");
    TableWriter constant_row(database, "constant");
    for (std::size_t type_number = 1; const auto& type : model.constant_types) {
        type_row.insert(type_number, type.isc);
        for (std::size_t number = 1; const Constant& constant : type.instances) {
            constant_row.insert(type_number, number++, constant.used, constant.description, constant.value);
        }
        ++type_number;
    }
}

std::string schema_for(std::span<const MissingValue> missing)
{
    constexpr std::string_view no_null = " NOT NULL";
    std::string schema(model_schema());
    for (std::size_t at = 0; !missing.empty() && (at = schema.find(no_null)) != std::string::npos;) {
        schema.erase(at, no_null.size());
    }
    return schema;
}

void forget(const Database& database, const MissingValue& value)
{
    const TableShape& table = model_table(value.table);
    std::string sql = "UPDATE " + table.name + " SET " + std::string(value.column) + " = NULL WHERE ";
    for (std::size_t key = 0; key < table.keys; ++key) {
        sql += (key == 0 ? "" : " AND ") + table.columns[key] + " = " + std::to_string(value.key.at(key));
    }
    database.run(sql.c_str());
}

/// All that a load refuses, but for the NULLs in the place of missing values.
void check_but_for_missing(const std::filesystem::path& file, std::size_t missing)
{
    LoadOptions options;
    options.most_problems += missing;
    try {
        check_model(file, options);
    } catch (const StoreError& error) {
        const auto is_null = [](const StoreProblem& problem) { return problem.value == "NULL"; };
        if (error.problems.size() > missing || !std::all_of(error.problems.begin(), error.problems.end(), is_null)) {
            throw;
        }
    }
}

/// All but the numbered rows.
void save_tables(const Database& database, const Model& model)
{
    save_run(database, model);
    save_segments(database, model);
    save_systems(database, model);
    save_flows(database, model);
    save_exchanges(database, model);
    save_time_functions(database, model);
    save_parameters(database, model);
    save_constants(database, model);
}

} // namespace

struct NewModel::Parts {
    NewFile file;
    std::vector<MissingValue> missing;
    std::optional<RowWriter> rows{};
};

NewModel::NewModel(const std::filesystem::path& database, const TemporaryFiles& temporary_files,
                   std::span<const MissingValue> missing)
    : parts_(new Parts{{database, temporary_files}, {missing.begin(), missing.end()}})
{
    const auto create_tables = [&](const Database& file) { file.run(schema_for(missing).c_str()); };
    parts_->file.write([&] {
        change_unshared(parts_->file.unnamed(), ForeignKeys::free, create_tables);
        parts_->rows.emplace(parts_->file.unnamed());
    });
}

NewModel::~NewModel() = default;

void NewModel::add_series(std::string_view table, const std::array<std::int32_t, 2>& key, const TimeSeries& series)
{
    parts_->file.write([&] {
        parts_->rows->add(table, {static_cast<std::uint64_t>(key[0]), static_cast<std::uint64_t>(key[1])}, series);
    });
}

void NewModel::finish(const Model& model)
{
    const NewFile& file = parts_->file;
    const std::vector<MissingValue>& missing = parts_->missing;
    const auto fill_other_tables = [&](const Database& opened) {
        save_tables(opened, model);
        for (const MissingValue& value : missing) {
            forget(opened, value);
        }
    };
    // what the schema lets pass but a load would refuse is found by reading it back before it gets its name; that finds
    // rows without those that they refer to as well, so that not each row has to look for its own
    file.write([&] {
        parts_->rows->finish(numbered_tables(model));
        change_unshared(file.unnamed(), ForeignKeys::free, fill_other_tables); // which writes all through to the disk
        check_but_for_missing(file.unnamed(), missing.size());
    });
    file.give_name();
}

void save_model(const Model& model, const std::filesystem::path& database, std::span<const MissingValue> missing,
                const TemporaryFiles& temporary_files)
{
    NewModel(database, temporary_files, missing).finish(model);
}

} // namespace velm
