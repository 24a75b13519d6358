#include "model_store/model_store.hpp"
#include "model_store/new_file.hpp"

#include <algorithm>
#include <string>

namespace velm {

namespace {

/// Without the blanks and the comment lines before its first statement.
std::string_view from_statement(std::string_view script)
{
    for (;;) {
        script.remove_prefix(std::min(script.find_first_not_of(" \t\r\n"), script.size()));
        if (!script.starts_with("--")) {
            return script;
        }
        script.remove_prefix(std::min(script.find('\n'), script.size()));
    }
}

/// Runs the statements one by one, so that a failure can name its line.
void run_script(const Database& database, std::string_view script)
{
    std::string_view rest = from_statement(script);
    while (!rest.empty()) {
        const std::string_view before = script.substr(0, script.size() - rest.size());
        try {
            Statement statement(database, rest, &rest);
            while (statement.handle() != nullptr && statement.step()) {
            }
        } catch (const SqliteError& error) {
            const auto line = 1 + std::count(before.begin(), before.end(), '\n');
            throw StoreError(
                {{"", "the statement from line " + std::to_string(line), "", "", error.what(), "correct the SQL"}},
                false);
        }
        rest = from_statement(rest);
    }
}

} // namespace

void create_database(std::string_view sql, const std::filesystem::path& database)
{
    const NewFile file(database, TemporaryFiles::plain());
    const auto run_all = [sql](const Database& opened) { run_script(opened, sql); };
    file.write([&] { change_unshared(file.unnamed(), ForeignKeys::bound, run_all); });
    file.give_name();
}

} // namespace velm
