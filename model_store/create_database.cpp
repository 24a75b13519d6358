#include "model_store/model_store.hpp"
#include "model_store/new_file.hpp"

#include <algorithm>
#include <string>

namespace velm {

namespace {

/// Runs the statements one by one, so that a failure can name its line.
void run_script(const Database& database, std::string_view script)
{
    std::string_view rest = script;
    while (!rest.empty()) {
        const std::string_view current = rest;
        try {
            Statement statement(database, current, &rest);
            while (statement.handle() != nullptr && statement.step()) {
            }
        } catch (const SqliteError& error) {
            const auto start = current.find_first_not_of(" \t\r\n");
            const auto before = script.substr(0, script.size() - current.size() + start);
            const auto line = 1 + std::count(before.begin(), before.end(), '\n');
            throw StoreError(
                {{"", "the statement from line " + std::to_string(line), "", "", error.what(), "correct the SQL"}},
                false);
        }
    }
}

} // namespace

void create_database(std::string_view sql, const std::filesystem::path& database)
{
    write_new_database(
        database, [sql](const Database& file) { run_script(file, sql); }, [](const std::filesystem::path&) {});
}

} // namespace velm
