#include "model_store/load_model.hpp"

#include "model_store/load_parts.hpp"
#include "model_store/open_model.hpp"

namespace velm {

namespace {

void load_tables(LoadState& load, Model& model)
{
    load_run(load, model);
    load_segments(load, model);
    load_systems(load, model);
    load_flows(load, model);
    load_exchanges(load, model);
    load_time_functions(load, model);
    load_parameters(load, model);
    load_constants(load, model);
    if (load.options.on_progress) {
        load.options.on_progress(load.rows);
    }
}

Model load(const std::filesystem::path& file, const LoadOptions& options, bool keep)
{
    ProblemList problems(options.most_problems);
    Model model;
    std::string table;
    try {
        const Database database = open_model(file, problems);
        if (options.quick_check) {
            check_quickly(database, file, problems);
        }
        LoadState load{database, problems, options, table, keep};
        load_tables(load, model);
    } catch (const SqliteError& error) {
        problems.add(file_problem(file, error, table));
    }
    problems.throw_if_any();
    return model;
}

} // namespace

Model load_model(const std::filesystem::path& database, const LoadOptions& options)
{
    return load(database, options, true);
}

void check_model(const std::filesystem::path& database, const LoadOptions& options)
{
    load(database, options, false);
}

} // namespace velm
