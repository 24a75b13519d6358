// Compares what is written about tables and keys with model/tables.hpp and host_link/host_keys.hpp: the columns in
// schema.sql, the tables of docs/model-database.md and docs/host-protocol.md. With --write it brings them up to date.
#include "headless_host/key_columns.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace velm {
namespace {

struct WrittenColumn {
    std::string definition; ///< in SQL
    std::string meaning;
};

/// What a value is refused for, with a name that says so: "system.tag has at most 5 characters".
std::string constraint(const std::string& column, const std::string& words, const std::string& condition)
{
    return " CONSTRAINT \"" + column + ' ' + words + "\" CHECK (" + condition + ')';
}

std::string constraint_of(const ColumnText& column, Kind kind, bool is_flag, const std::string& table)
{
    const std::string name(column.name);
    const std::string whole_name = table + '.' + name;
    const std::string most = std::to_string(column.length);
    switch (column.rule) {
    case Rule::segment: return " REFERENCES segment (number)";
    case Rule::unique: return " UNIQUE";
    case Rule::segment_or_outside:
    case Rule::segment_below: return constraint(whole_name, "is 0 or more", name + " >= 0");
    default: break;
    }
    return is_flag ? constraint(whole_name, "is 0 or 1", name + " IN (0, 1)")
           : kind == Kind::text
               ? constraint(whole_name, "has at most " + most + " characters", "length(" + name + ") <= " + most)
               : "";
}

template <class Item>
WrittenColumn written(const Column<Item>& column, const std::string& table)
{
    constexpr std::size_t flag = 2; // among the kinds of members
    const Kind kind = kind_of(column);
    std::string definition(column.name);
    definition += kind == Kind::real ? " REAL" : kind == Kind::text ? " TEXT" : " INTEGER";
    definition += " NOT NULL";
    if (!column.default_value.empty()) {
        definition.append(" DEFAULT ").append(column.default_value);
    }
    std::string meaning(column.unit);
    meaning.append(meaning.empty() || column.meaning.empty() ? "" : ": ").append(column.meaning);
    if (column.length != 0) {
        meaning.append(meaning.empty() ? "" : "; ").append("at most " + std::to_string(column.length) + " characters");
    }
    return {definition + constraint_of(column, kind, column.member.index() == flag, table), meaning};
}

std::map<std::string, std::vector<WrittenColumn>> columns_of_tables()
{
    std::map<std::string, std::vector<WrittenColumn>> tables;
    for_each_table([&](TableId, const auto& table) {
        const std::string name(table.name);
        for (const auto& column : table.columns) {
            tables[name].push_back(written(column, name));
        }
    });
    return tables;
}

/// Columns beside the key come from the table, all else stays.
std::string updated_schema(const std::string& schema)
{
    const auto tables = columns_of_tables();
    auto table = tables.end();
    std::ptrdiff_t keys = 0; // that are still to come
    std::string updated;
    std::istringstream lines(schema);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("CREATE TABLE ")) {
            table = tables.find(line.substr(13, line.find(' ', 13) - 13));
            const auto words = words_of_key(table == tables.end() ? "" : table->first);
            keys = std::max<std::ptrdiff_t>(1, std::ranges::count_if(words, [](auto word) { return !word.empty(); }));
        } else if (table != tables.end()) {
            if (line.starts_with(")") || line.starts_with("    PRIMARY KEY")) { // behind the columns
                for (const WrittenColumn& column : table->second) {
                    const bool is_last = &column == &table->second.back() && line.starts_with(")");
                    updated += "    " + column.definition + (is_last ? " -- " : ", -- ") + column.meaning + '\n';
                }
                table = tables.end();
            } else if (keys-- <= 0) {
                continue;
            }
        }
        updated += line + '\n';
    }
    return updated;
}

std::string after(const std::string& line, const std::string& mark)
{
    const std::size_t place = line.find(mark);
    return place == std::string::npos ? "" : line.substr(place + mark.size());
}

/// Each table's comment, then each column's type, default and comment.
std::string tables_in_words(const std::string& schema)
{
    std::string words;
    std::string comment;
    std::istringstream lines(schema);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("-- ")) {
            comment = line.substr(3);
        } else if (const std::string table = after(line, "CREATE TABLE "); !table.empty()) {
            words += "\n### " + table.substr(0, table.size() - 2) + "\n\n" + comment +
                     "\n\n| Column | Type | Default | Meaning |\n|---|---|---|---|\n";
        } else if (const std::string meaning = after(line, " -- "); !meaning.empty() && line.starts_with("    ")) {
            const std::string column = line.substr(4, line.find(' ', 4) - 4);
            const std::string type = after(line, column + " ");
            const std::string given = after(line, " DEFAULT ");
            words += "| `" + column + "` | " + type.substr(0, type.find(' ')) + " | " +
                     given.substr(0, given.find_first_of(" ,")) + " | " + meaning + " |\n";
        }
    }
    return words;
}

std::string in_words(const Argument& argument)
{
    std::string words = argument.direction == Direction::in ? "in " : "out ";
    switch (argument.kind) {
    case Kind::integer: words += "integer"; break;
    case Kind::real: words += "real"; break;
    case Kind::series: words += "series"; break;
    case Kind::text:
        words += "text of " + (argument.text_length == 0 ? "any length" : std::to_string(argument.text_length));
    }
    return words.append(": ").append(argument.meaning);
}

std::string keys_in_words()
{
    std::map<std::string_view, std::string> columns;
    for_each_table([&](TableId, const auto& table) {
        for (const auto& column : table.columns) {
            std::string& list = columns[column.host.key];
            list.append(list.empty() ? "`" : ", `").append(table.name).append(".").append(column.name).append("`");
        }
    });
    std::string words = "| Key | Key length | Call form | Arguments, in order | In a model database |\n"
                        "|---|---|---|---|---|\n";
    for (const HostKey& key : host_keys) {
        words += "| `" + std::string(key.name) + "` | " + std::to_string(key.length()) + " | " +
                 std::to_string(key.argument_count) + " | ";
        for (std::size_t place = 0; place < key.argument_count; ++place) {
            words += (place == 0 ? "" : "; ") + in_words(key.arguments[place]);
        }
        words += " | " + columns[key.name] + " |\n";
    }
    return words;
}

std::string content_of(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// The rest of the document, from where `mark` first stands, becomes `words`.
std::string with_end(const std::string& document, const std::string& mark, const std::string& words)
{
    return document.substr(0, document.find(mark)) + words;
}

/// True when the file is up to date, or has been brought so.
bool update(const std::filesystem::path& file, const std::string& content, bool write)
{
    if (content_of(file) == content) {
        return true;
    }
    if (!write) {
        std::cerr << file.string() << " is out of date; run ./dev tables\n";
        return false;
    }
    std::ofstream(file, std::ios::binary) << content;
    std::cerr << file.string() << " written\n";
    return true;
}

} // namespace
} // namespace velm

int main(int argc, char** argv)
{
    const std::filesystem::path project = argc > 1 ? argv[1] : ".";
    const bool write = argc > 2 && std::string_view(argv[2]) == "--write";
    const auto schema_file = project / "model_store/schema.sql";
    const auto database_document = project / "docs/model-database.md";
    const auto protocol_document = project / "docs/host-protocol.md";

    const std::string schema = velm::updated_schema(velm::content_of(schema_file));
    const std::string tables =
        velm::with_end(velm::content_of(database_document), "\n### model\n", velm::tables_in_words(schema));
    const std::string keys = velm::with_end(velm::content_of(protocol_document), "| Key |", velm::keys_in_words());
    const bool first = velm::update(schema_file, schema, write);
    const bool second = velm::update(database_document, tables, write);
    const bool third = velm::update(protocol_document, keys, write);
    return first && second && third ? 0 : 1;
}
