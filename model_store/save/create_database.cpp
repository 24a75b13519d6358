#include "model_store/model_store.hpp"
#include "model_store/sqlite/new_file.hpp"
#include "model_store/sqlite/sql_script.hpp"

namespace velm {

void create_database(std::string_view sql, const std::filesystem::path& database)
{
    NewFile file(database, Standing::refused);
    const auto run = [](Statement& statement, std::size_t /*line*/) {
        while (statement.step()) {
        }
    };
    const auto run_all = [&](const Database& opened) {
        run_script(opened, {std::string(sql), ""}, run, "correct the SQL");
    };
    file.write([&] { change_unshared(file.unnamed(), ForeignKeys::bound, run_all); });
    file.give_name();
}

} // namespace velm
