#pragma once

#include "model_store/latin1.hpp"
#include "model_store/model_store.hpp"
#include "model_store/table_shape.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace velm {

/// Inserts rows into a table of the schema.
class TableWriter {
public:
    TableWriter(const Database& database, std::string_view table)
        : shape_(model_table(table)), statement_(database, insertion(shape_))
    {
    }

    /// Inserts a row of all columns in the schema's order. Throws StoreError when the schema refuses it.
    template <class... Values>
    void insert(const Values&... values)
    {
        int column = 0;
        (bind(++column, values), ...);
        try {
            statement_.step();
        } catch (const SqliteError& error) {
            if ((error.code & 0xFF) != SQLITE_CONSTRAINT) { // of the primary result code
                throw;
            }
            throw StoreError({{shape_.name, row_in_words(values...), "", "", error.what(), "change the model"}}, false);
        }
        sqlite3_reset(statement_.handle());
    }

private:
    static std::string insertion(const TableShape& shape)
    {
        std::string sql = "INSERT INTO " + shape.name + " (" + shape.column_list() + ") VALUES (?";
        for (std::size_t column = 1; column < shape.columns.size(); ++column) {
            sql += ", ?";
        }
        return sql + ')';
    }

    void bind(int column, std::int64_t value) { sqlite3_bind_int64(statement_.handle(), column, value); }
    void bind(int column, std::size_t value) { bind(column, static_cast<std::int64_t>(value)); }
    void bind(int column, std::int32_t value) { bind(column, std::int64_t{value}); }
    void bind(int column, bool value) { bind(column, std::int64_t{value ? 1 : 0}); }
    void bind(int column, float value) { sqlite3_bind_double(statement_.handle(), column, value); }
    void bind(int column, const std::string& latin1)
    {
        const std::string utf8 = utf8_from_latin1(latin1);
        sqlite3_bind_text(statement_.handle(), column, utf8.data(), static_cast<int>(utf8.size()), SQLITE_TRANSIENT);
    }

    template <class... Values>
    [[nodiscard]] std::string row_in_words(const Values&... values) const
    {
        std::vector<std::int64_t> keys;
        const auto append = [&](const auto& value) {
            if constexpr (std::is_integral_v<std::decay_t<decltype(value)>>) {
                if (keys.size() < shape_.keys) { // they are the first columns
                    keys.push_back(static_cast<std::int64_t>(value));
                }
            }
        };
        (append(values), ...);
        return shape_.row_in_words(keys);
    }

    const TableShape& shape_;
    Statement statement_;
};

} // namespace velm
