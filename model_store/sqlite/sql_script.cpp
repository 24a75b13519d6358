#include "model_store/sqlite/sql_script.hpp"

#include "plain_text/plain_text.hpp"

#include <algorithm>
#include <string>
#include <string_view>

namespace velm {

namespace {

/// Without the blanks, semicolons and comments before its first statement.
std::string_view from_statement(std::string_view script)
{
    for (;;) {
        script.remove_prefix(std::min(script.find_first_not_of(" \t\r\n;"), script.size()));
        if (script.starts_with("--")) {
            script.remove_prefix(std::min(script.find('\n'), script.size()));
        } else if (script.starts_with("/*")) {
            script.remove_prefix(std::min(script.find("*/"), script.size() - 2) + 2);
        } else {
            return script;
        }
    }
}

/// The statement's first line, cut where it is long.
std::string beginning_of(std::string_view statement)
{
    constexpr std::size_t most = 60; // characters
    return printable(statement.substr(0, statement.find_first_of(";\r\n")), most);
}

} // namespace

void run_script(const Database& database, const SqlScript& script, const RunStatement& run, const char* remedy)
{
    std::string_view rest = script.text;
    std::size_t line = 1;
    const auto skip_to = [&](std::string_view next) {
        const std::string_view passed = rest.substr(0, rest.size() - next.size());
        line += static_cast<std::size_t>(std::count(passed.begin(), passed.end(), '\n'));
        rest = next;
    };
    for (skip_to(from_statement(rest)); !rest.empty(); skip_to(from_statement(rest))) {
        std::string_view next;
        try {
            // with the NUL behind the script, SQLite takes it as it lies, without a copy for each statement
            Statement statement(database, std::string_view(rest.data(), rest.size() + 1), &next);
            if (statement.handle() != nullptr) {
                run(statement, line);
            }
        } catch (const SqliteError& error) {
            const std::string place = (script.name.empty() ? "" : script.name + ", ") + "line " + std::to_string(line);
            throw StoreError(
                {database_finding({}, "", place + ": '" + beginning_of(rest) + "' " + printable(error.what()), remedy)},
                false);
        }
        next.remove_suffix(std::min<std::size_t>(next.size(), 1));
        skip_to(next);
    }
}

} // namespace velm
