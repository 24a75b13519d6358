#include "fuzz/store_base.hpp"

#include "fuzz/scratch_folder.hpp"
#include "model_store/model_store.hpp"

#include <iterator>
#include <limits>
#include <vector>

#include <sqlite3.h>

namespace velm {

extern const std::string_view everything_sql; // the bytes of a golden model's SQL, which the build puts in

namespace {

struct Table {
    std::string name;
    std::vector<std::string> columns;
};

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

/// A database in a file of the folder, for as long as it is worked on.
class Database {
public:
    explicit Database(std::string_view bytes) : file_(scratch_folder() / "worked_on.db")
    {
        write_file(file_, bytes);
        sqlite3_open(file_.c_str(), &database_);
        run("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF");
    }
    ~Database()
    {
        sqlite3_close(database_);
        std::filesystem::remove(file_);
    }
    Database& operator=(Database&&) = delete; // neither copied nor moved

    /// Runs SQL, with a value in the place of the first `?`; first columns of all rows. What fails changes nothing.
    std::vector<std::string> run(const std::string& sql, FuzzBytes* value = nullptr)
    {
        std::vector<std::string> rows;
        for (const char* rest = sql.c_str(); *rest != '\0';) {
            sqlite3_stmt* statement = nullptr;
            expect(sqlite3_prepare_v2(database_, rest, -1, &statement, &rest) == SQLITE_OK, "the SQL is sound");
            if (value != nullptr) {
                bind(statement, *value);
            }
            while (statement != nullptr && sqlite3_step(statement) == SQLITE_ROW) {
                const unsigned char* text = sqlite3_column_text(statement, 0);
                rows.emplace_back(text == nullptr ? "" : reinterpret_cast<const char*>(text));
            }
            sqlite3_finalize(statement);
        }
        return rows;
    }
    std::vector<Table> tables()
    {
        std::vector<Table> tables;
        for (const std::string& name : run("SELECT name FROM sqlite_schema WHERE type = 'table'")) {
            tables.push_back({name, run("SELECT name FROM pragma_table_info('" + name + "')")});
        }
        return tables;
    }
    [[nodiscard]] std::string bytes() const { return content_of(file_); }

private:
    std::filesystem::path file_;
    sqlite3* database_ = nullptr;
};

std::string without_checks()
{
    Database database(sound_database());
    for (const Table& table : database.tables()) {
        database.run("CREATE TABLE copy AS SELECT * FROM " + table.name + "; DROP TABLE " + table.name +
                     "; ALTER TABLE copy RENAME TO " + table.name);
    }
    database.run("VACUUM");
    return database.bytes();
}

void change(Database& database, const Table& table, FuzzBytes& changes)
{
    const std::uint8_t what = changes.byte();
    const std::string row = " WHERE rowid = " + std::to_string(1 + changes.byte() % 16);
    if (what < 0xc0) {
        database.run("UPDATE " + table.name + " SET " + table.columns[what % table.columns.size()] + " = ?" + row,
                     &changes);
    } else if (what < 0xe0) {
        database.run("INSERT INTO " + table.name + " SELECT * FROM " + table.name + row);
    } else {
        database.run("DELETE FROM " + table.name + row);
    }
}

} // namespace

const std::string& sound_database()
{
    static const std::string bytes = [] {
        Database database("");
        database.run("PRAGMA page_size = 512; " + std::string(model_schema()) + std::string(everything_sql));
        return database.bytes();
    }();
    return bytes;
}

std::string database_with_rows(FuzzBytes changes)
{
    static const std::string unchecked = without_checks();
    static const std::vector<Table> tables = Database(unchecked).tables();
    Database database(unchecked);
    while (!changes.empty()) {
        const Table& table = tables[changes.byte() % tables.size()];
        change(database, table, changes);
    }
    return database.bytes();
}

} // namespace velm
