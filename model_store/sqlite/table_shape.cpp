#include "model_store/sqlite/table_shape.hpp"

#include "model/words.hpp"
#include "model_store/model_store.hpp"

#include <algorithm>

namespace velm {

namespace {

struct Reference {
    std::vector<TableShape> tables;
    SchemaIdentity identity;
};

TableShape shape_of(const Database& database, std::string_view table)
{
    TableShape shape{std::string(table), {}, 0};
    Statement columns(database, "SELECT name, pk FROM pragma_table_info('" + shape.name + "') ORDER BY cid");
    while (columns.step()) {
        shape.columns.emplace_back(columns.text(0));
        shape.keys += sqlite3_column_int(columns.handle(), 1) > 0 ? 1U : 0U;
    }
    return shape;
}

const Reference& reference()
{
    static const Reference result = [] {
        const Database database("schema", SQLITE_OPEN_READWRITE | SQLITE_OPEN_MEMORY);
        database.run(std::string(model_schema()).c_str());
        Reference made{{}, identity_of(database)};
        Statement tables(database, "SELECT name FROM sqlite_schema WHERE type = 'table' ORDER BY rowid");
        while (tables.step()) {
            made.tables.push_back(shape_of(database, tables.text(0)));
        }
        return made;
    }();
    return result;
}

} // namespace

std::string TableShape::column_list() const
{
    std::string list;
    for (const std::string& column : columns) {
        list += (list.empty() ? "" : ", ") + column;
    }
    return list;
}

std::string TableShape::insertion(std::size_t rows) const
{
    std::string row = "(?";
    for (std::size_t column = 1; column < columns.size(); ++column) {
        row += ", ?";
    }
    row += ')';
    // a refusal ends the transaction anyway: SQLite need not be able to take one statement back
    std::string sql = "INSERT OR ROLLBACK INTO " + name + " (" + column_list() + ") VALUES " + row;
    for (std::size_t others = 1; others < rows; ++others) {
        sql += ", " + row;
    }
    return sql;
}

const std::vector<TableShape>& model_tables()
{
    return reference().tables;
}

const TableShape& model_table(std::string_view name)
{
    return *std::find_if(model_tables().begin(), model_tables().end(),
                         [name](const TableShape& table) { return table.name == name; });
}

SchemaIdentity identity_of(const Database& database)
{
    return {database.integer("PRAGMA application_id"), database.integer("PRAGMA user_version")};
}

const SchemaIdentity& model_identity()
{
    return reference().identity;
}

std::string store_versions()
{
    return std::string("SQLite ") + sqlite3_libversion() + ", model schema " + std::to_string(model_identity().version);
}

} // namespace velm
