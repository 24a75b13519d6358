#include "model_store/load/load_model.hpp"

#include "model_store/load/changed_copy.hpp"
#include "model_store/load/load_parts.hpp"
#include "model_store/load/load_values.hpp"
#include "model_store/sqlite/open_model.hpp"

#include <functional>
#include <optional>
#include <system_error>
#include <utility>

namespace velm {

namespace {

/// Below it, a second thread takes longer to begin than it saves.
constexpr std::uintmax_t bytes_for_two_threads = 1'000'000;

/// Reads a model whose rows are all as they must be; nothing when they are not.
std::optional<Model> load_sound(const Database& database, const std::filesystem::path& file, const LoadOptions& options)
{
    ProblemList problems(1);
    Model model;
    std::string table;
    LoadState load{database, problems, options, table, Rows::of_items};
    try {
        load_tables(load, model);
        problems.throw_if_any();
        std::optional<Database> other; // the read transaction of the first keeps writers out
        std::error_code unknown;
        if (options.changes.text.empty() && std::filesystem::file_size(file, unknown) > bytes_for_two_threads) {
            other = open_model(file, problems);
        }
        const auto on_progress = [&](std::uint64_t rows) { options.on_progress(load.rows + rows); };
        const bool sound = load_values(database, other ? &*other : nullptr, model,
                                       options.on_progress ? on_progress : std::function<void(std::uint64_t)>());
        return sound ? std::optional(std::move(model)) : std::nullopt;
    } catch (const StoreError&) {
        return {};
    } catch (const SqliteError&) {
        return {};
    }
}

Model load(const std::filesystem::path& file, const LoadOptions& options, Rows rows)
{
    ProblemList problems(options.most_problems);
    Model model;
    std::string table;
    try {
        Database database = open_model(file, problems);
        if (options.quick_check) {
            check_quickly(database, file, problems);
        }
        if (!options.changes.text.empty()) {
            database = changed_copy(database, options.changes, options.on_change);
        }
        if (rows == Rows::all) {
            if (std::optional<Model> sound = load_sound(database, file, options)) {
                return *std::move(sound);
            }
        }
        LoadState load{database, problems, options, table, rows};
        load_tables(load, model);
        if (options.on_progress) {
            options.on_progress(load.rows);
        }
    } catch (const SqliteError& error) {
        problems.add(file_problem(file, error, table));
    }
    problems.throw_if_any();
    return model;
}

} // namespace

Model load_model(const std::filesystem::path& database, const LoadOptions& options)
{
    return load(database, options, Rows::all);
}

void check_model(const std::filesystem::path& database, const LoadOptions& options)
{
    load(database, options, Rows::of_items);
}

} // namespace velm
