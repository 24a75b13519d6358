#pragma once

#include "model/address.hpp"
#include "model/column.hpp"
#include "model_store/sqlite/sqlite_database.hpp"
#include "model_store/sqlite/table_shape.hpp"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velm {

/// Inserts rows into a table of the schema. Throws StoreError for a number that is not finite and for what the schema
/// refuses.
class TableWriter {
public:
    TableWriter(const Database& database, std::string_view table);

    /// Inserts the row of an item, whose numbers are given.
    template <class Table, class Item>
    void insert(const Table& table, const RowNumbers& numbers, const Item& item)
    {
        begin(numbers);
        for (const auto& column : table.columns) {
            with_value(column, item, [&](const auto& value) { bind(column.name, value); });
        }
        end();
    }

    /// Inserts a row that has one or two reals beside its key. Such rows come by the million, so they are gathered for
    /// one statement; flush() inserts what is left.
    void add(const RowNumbers& numbers, std::span<const float> reals);
    void flush();

    [[noreturn]] void refuse(const RowNumbers& numbers, std::string_view column, std::string value,
                             const std::string& message, std::string remedy) const;

private:
    static constexpr std::size_t rows_at_once = 50;
    struct Row {
        RowNumbers numbers{};
        std::array<float, 2> reals{};
    };

    void begin(const RowNumbers& numbers);
    void bind(std::string_view column, std::int32_t value);
    void bind(std::string_view column, float value);
    void bind(std::string_view column, bool value);
    void bind(std::string_view column, const std::string& latin1);
    void end();
    void insert(Statement& statement, std::span<const Row> rows);

    const TableShape& shape_;
    Statement one_;
    Statement many_;
    RowNumbers numbers_{};
    int bound_ = 0;
    std::vector<Row> gathered_;
};

} // namespace velm
