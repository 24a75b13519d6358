#include "tests/model_store/store_fixture.hpp"

#include <algorithm>
#include <fstream>
#include <iterator>

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
    Segment& segment = model.segments[1];
    segment.name = "Weir";
    segment.bottom_segment = 3;
    segment.type = 4;
    segment.flow_option = 2;
    float value = 10;
    for (float Segment::*field :
         {&Segment::volume, &Segment::velocity_multiplier, &Segment::velocity_exponent, &Segment::depth_multiplier,
          &Segment::depth_exponent, &Segment::slope, &Segment::length, &Segment::width, &Segment::roughness,
          &Segment::minimum_depth, &Segment::initial_surface_elevation, &Segment::bottom_elevation,
          &Segment::side_slope, &Segment::initial_depth, &Segment::weir_height, &Segment::weir_type}) {
        segment.*field = value += 1.1F;
    }
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
    model.model_type = 2;
    model.start_date = {2024, 3, 1};
    model.start_time = {7, 30, 15};
    model.skip_date = {2025, 4, 2};
    model.skip_time = {8, 31, 16};
    model.julian_end_time = 365.5F;
    model.mass_balance_table_output = 31;
    model.solution_technique = -2147483647 - 1;
    model.negative_solution = 2147483647;
    model.restart = 34;
    model.time_optimization = 35;
    model.water_quality_linkage = 36;
    model.topt_factor = 0.9F;
    model.maximum_time_step = 0.5F;
    model.minimum_time_step = 0.001F;
    model.print_interval = 0.25F;
    model.bed_volume_option = 37;
    model.bed_compaction_time_step = 38;
    model.volume_scale_factor = 39;
    model.volume_conversion_factor = 40;
    model.hydrodynamic_file = std::string(512, '\xFF'); // 1024 bytes in the database
    model.nps_option = 3;
    model.nps_file = "runoff.nps";
    add_systems(model);
    add_segments(model);
    add_functions(model);
    return model;
}

StoreTest::StoreTest()
{
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    folder_ = fs::path(testing::TempDir()) / (std::string("velm-") + test->test_suite_name() + "-" + test->name());
    fs::remove_all(folder_);
    fs::create_directories(folder_);
}

StoreTest::~StoreTest()
{
    fs::permissions(folder_, fs::perms::owner_all);
    fs::remove_all(folder_);
}

std::vector<std::string> StoreTest::names_in_folder() const
{
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder_)) {
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
    } catch (const StoreError& error) {
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

std::string bytes_of(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace velm
