#include "tests/model_store/store_fixture.hpp"

#include "model/items.hpp"

#include <algorithm>
#include <type_traits>

#include <sqlite3.h>

namespace velm {

namespace {

namespace fs = std::filesystem;

std::vector<std::string> run(const fs::path& database, const std::string& sql)
{
    sqlite3* connection = nullptr;
    EXPECT_EQ(SQLITE_OK, sqlite3_open(database.string().c_str(), &connection));
    std::vector<std::string> values;
    const auto add = [](void* list, int, char** row, char**) {
        static_cast<std::vector<std::string>*>(list)->emplace_back(row[0] == nullptr ? "NULL" : row[0]);
        return 0;
    };
    EXPECT_EQ(SQLITE_OK, sqlite3_exec(connection, sql.c_str(), add, &values, nullptr))
        << sqlite3_errmsg(connection) << "\nin " << sql;
    sqlite3_close(connection);
    return values;
}

/// Gives every number of the item a value of its own.
template <class Item>
void number_columns(Item& item)
{
    float value = 10;
    for_each_table([&](TableId, const auto& table) {
        if constexpr (std::is_same_v<typename std::remove_cvref_t<decltype(table)>::Item, Item>) {
            for (const Column<Item>& column : table.columns) {
                with_value(column, item, [&](auto& datum) {
                    using Value = std::remove_cvref_t<decltype(datum)>;
                    if constexpr (std::is_arithmetic_v<Value>) {
                        datum = static_cast<Value>(value += 1.1F);
                    }
                });
            }
        }
    });
}

void add_systems(Model& model)
{
    model.systems.resize(2);
    System& system = model.systems[0];
    system.name = "Ammonia of thirty letters \xE4\xF6\xFC\xDF";
    system.tag = "NH3-N";
    system.boundaries = {1.5F, 2.5F, {{2, {{0, 0.5F}, {10, 0.25F}}}, {3, {}}}};
    system.loads = {3.5F, 4.5F, {{1, {}}, {2, {{5, 6, 7}, {8, 9, 10}}}}};
    system.solids_transport_field = 3;
    system.solids_density = 2.65F;
    system.maximum_concentration = 3.4028235e38F;
    system.initial_conditions = {{1.25F, 0.5F}, {2.25F, 0.75F}, {1e-45F, 0}};
    model.systems[1].name = "Salt";
    model.systems[1].initial_conditions.resize(3);
}

void add_segments(Model& model)
{
    model.segments.resize(3);
    number_columns(model.segments[1]);
    model.segments[1].name = "Weir";
    model.segments[1].bottom_segment = 3;
}

void add_functions(Model& model)
{
    model.flow_fields = {
        {1, 1, {}}, {1.25F, 0.0283F, {{"River", {}, {}}, {"Brook", {{0, 1, 0.5F}, {1, 2, -1}}, {{3, 2}, {4, 5}}}}}};
    model.exchange_fields = {{1.125F, 1.375F, {{"Mixing", {{0, 2, 500, 50}, {1, 3, 600, 60}}, {{3, 4}, {40, 41}}}}}};
    model.time_function_types = {{70, {}}, {-3, {{false, "Wind", {}}, {true, "Light", {{1, 2}, {150, 151}}}}}};
    model.parameter_types = {{21, {{true, "Shading", 0.5F, {0.125F, 0.25F, 8}}, {false, "", 1, {0, 0, 0}}}}, {22, {}}};
    model.constant_types = {{11, {{false, "Unused", 1}, {true, "Decay", 0.0625F}}}};
}

} // namespace

Model full_model()
{
    Model model;
    number_columns(model);
    model.solution_technique = -2147483647 - 1;
    model.negative_solution = 2147483647;
    model.hydrodynamic_file = std::string(512, '\xFF'); // 1024 bytes in the database
    model.nps_file = "runoff.nps";
    add_systems(model);
    add_segments(model);
    add_functions(model);
    return model;
}

std::vector<std::string> StoreTest::names_in_folder() const
{
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder_.path)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

fs::path StoreTest::good_database() const
{
    save_model(full_model(), file("good.db"));
    return file("good.db");
}

void spoil(const fs::path& database, const std::string& sql)
{
    run(database, "PRAGMA foreign_keys = OFF; PRAGMA ignore_check_constraints = ON; PRAGMA synchronous = OFF; " + sql);
}

std::vector<std::string> query(const fs::path& database, const std::string& sql)
{
    return run(database, sql);
}

std::string error_of(const std::function<void()>& action)
{
    try {
        action();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "no error";
}

std::string load_error(const fs::path& database, const LoadOptions& options)
{
    return error_of([&] { static_cast<void>(load_model(database, options)); });
}

std::string quoted(const fs::path& file)
{
    return std::string("'").append(file.string()).append("'");
}

} // namespace velm
