#include "fuzz/store_base.hpp"

#include "model_store/model_store.hpp"

#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <vector>

#include <sqlite3.h>

namespace velm {

extern const std::string_view everything_sql; // the bytes of a golden model's SQL, which the build puts in

namespace {

namespace fs = std::filesystem;

struct Table {
    std::string name;
    std::vector<std::string> columns;
};

struct Close {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Connection = std::unique_ptr<sqlite3, Close>;

/// Runs SQL, with a value in the place of the first `?`; first columns of all rows. What fails changes nothing.
std::vector<std::string> run(const Connection& database, const std::string& sql, FuzzBytes* value = nullptr);

void bind(sqlite3_stmt* statement, FuzzBytes& value)
{
    constexpr std::int64_t integers[] = {0, 1, -1, 2, 1'000'000, std::numeric_limits<std::int64_t>::max(), 0x80000000};
    const std::uint8_t kind = value.byte();
    const std::string_view bytes = kind % 8 > 5 ? value.take(value.byte()) : std::string_view();
    switch (kind % 8) {
    case 0: sqlite3_bind_null(statement, 1); break;
    case 1: sqlite3_bind_int64(statement, 1, value.byte()); break;
    case 2: sqlite3_bind_int64(statement, 1, integers[kind / 8U % std::size(integers)]); break;
    case 3: sqlite3_bind_double(statement, 1, value.number<float>()); break;
    case 4: sqlite3_bind_double(statement, 1, value.number<double>()); break;
    case 5: sqlite3_bind_zeroblob(statement, 1, kind < 0xf0 ? 600 : 1'500'000); break;
    case 6: sqlite3_bind_blob(statement, 1, bytes.data(), static_cast<int>(bytes.size()), SQLITE_TRANSIENT); break;
    default: sqlite3_bind_text(statement, 1, bytes.data(), static_cast<int>(bytes.size()), SQLITE_TRANSIENT); break;
    }
}

std::vector<std::string> run(const Connection& database, const std::string& sql, FuzzBytes* value)
{
    std::vector<std::string> rows;
    const char* rest = sql.c_str();
    while (*rest != '\0') {
        sqlite3_stmt* prepared = nullptr;
        expect(sqlite3_prepare_v2(database.get(), rest, -1, &prepared, &rest) == SQLITE_OK, "the SQL is sound");
        const std::unique_ptr<sqlite3_stmt, Close> statement(prepared);
        if (value != nullptr) {
            bind(prepared, *value);
        }
        while (prepared != nullptr && sqlite3_step(prepared) == SQLITE_ROW) {
            const unsigned char* text = sqlite3_column_text(prepared, 0);
            rows.emplace_back(text == nullptr ? "" : reinterpret_cast<const char*>(text));
        }
    }
    return rows;
}

std::string serialized(const Connection& database)
{
    sqlite3_int64 size = 0;
    const std::unique_ptr<unsigned char, decltype(&sqlite3_free)> bytes(
        sqlite3_serialize(database.get(), "main", &size, 0), &sqlite3_free);
    return {reinterpret_cast<const char*>(bytes.get()), static_cast<std::size_t>(size)};
}

Connection in_memory(const std::string& bytes)
{
    sqlite3* opened = nullptr;
    sqlite3_open(":memory:", &opened);
    auto* const copy = static_cast<unsigned char*>(sqlite3_malloc64(bytes.size()));
    std::copy(bytes.begin(), bytes.end(), copy);
    const auto size = static_cast<sqlite3_int64>(bytes.size());
    sqlite3_deserialize(opened, "main", copy, size, size,
                        SQLITE_DESERIALIZE_FREEONCLOSE | SQLITE_DESERIALIZE_RESIZEABLE);
    return Connection(opened);
}

std::string made_sound(const fs::path& folder)
{
    const fs::path file = folder / "sound.db";
    create_database(std::string(model_schema()) + std::string(everything_sql), file);
    sqlite3* opened = nullptr;
    sqlite3_open(file.c_str(), &opened);
    const Connection database(opened);
    run(database, "PRAGMA page_size = 512; VACUUM");
    fs::remove(file);
    return serialized(database);
}

std::vector<Table> tables_of(const Connection& database)
{
    std::vector<Table> tables;
    for (const std::string& name : run(database, "SELECT name FROM sqlite_schema WHERE type = 'table'")) {
        tables.push_back({name, run(database, "SELECT name FROM pragma_table_info('" + name + "')")});
    }
    return tables;
}

std::string without_checks(const std::string& sound)
{
    const Connection database = in_memory(sound);
    for (const Table& table : tables_of(database)) {
        run(database, "CREATE TABLE copy AS SELECT * FROM " + table.name + "; DROP TABLE " + table.name +
                          "; ALTER TABLE copy RENAME TO " + table.name);
    }
    run(database, "VACUUM");
    return serialized(database);
}

void change(const Connection& database, const Table& table, FuzzBytes& changes)
{
    const std::uint8_t what = changes.byte();
    const std::string row = " WHERE rowid = " + std::to_string(1 + changes.byte() % 16);
    if (what < 0xc0) {
        run(database, "UPDATE " + table.name + " SET " + table.columns[what % table.columns.size()] + " = ?" + row,
            &changes);
    } else if (what < 0xe0) {
        run(database, "INSERT INTO " + table.name + " SELECT * FROM " + table.name + row);
    } else {
        run(database, "DELETE FROM " + table.name + row);
    }
}

} // namespace

const std::string& sound_database(const fs::path& folder)
{
    static const std::string bytes = made_sound(folder);
    return bytes;
}

std::string database_with_rows(const fs::path& folder, FuzzBytes changes)
{
    static const std::string unchecked = without_checks(sound_database(folder));
    static const std::vector<Table> tables = tables_of(in_memory(unchecked));
    const Connection database = in_memory(unchecked);
    while (!changes.empty()) {
        const Table& table = tables[changes.byte() % tables.size()];
        change(database, table, changes);
    }
    return serialized(database);
}

} // namespace velm
