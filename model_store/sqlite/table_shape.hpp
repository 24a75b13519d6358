#pragma once

#include "model_store/sqlite/sqlite_database.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velm {

/// A table as the schema has it.
struct TableShape {
    std::string name;
    std::vector<std::string> columns; ///< the key's first, in key order
    std::size_t keys = 0;             ///< how many columns make up the key

    /// The columns with commas between them.
    [[nodiscard]] std::string column_list() const;
    /// A statement that inserts so many rows at once.
    [[nodiscard]] std::string insertion(std::size_t rows) const;
};

/// The tables of model_schema(), read from SQLite itself, so that the schema's text is the only place that lists them.
[[nodiscard]] const std::vector<TableShape>& model_tables();
/// The table of that name, which must be one of the schema's.
[[nodiscard]] const TableShape& model_table(std::string_view name);

/// What identifies a model database among SQLite files, and the version of its tables.
struct SchemaIdentity {
    std::int64_t application_id = 0;
    std::int64_t version = 0;
};
[[nodiscard]] SchemaIdentity identity_of(const Database& database);
[[nodiscard]] const SchemaIdentity& model_identity();

} // namespace velm
