#pragma once

#include "model/column.hpp"
#include "model_store/problem_list.hpp"
#include "model_store/sqlite/sqlite_database.hpp"
#include "model_store/sqlite/table_shape.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velm {

/// The numbers of a parent row: its parent's and its own, or its own and 0.
using ParentKey = std::array<std::int64_t, 2>;

/// The rows that a table was found to have, in key order, for its child tables to be checked against.
class ParentKeys {
public:
    void add(const ParentKey& key) { keys_.push_back(key); }
    [[nodiscard]] bool contains(const ParentKey& key) const
    {
        // the usual case: numbers from 1 on without gaps, each in its place
        const auto place = static_cast<std::uint64_t>(key[0]) - 1;
        return (place < keys_.size() && keys_[place] == key) || std::binary_search(keys_.begin(), keys_.end(), key);
    }
    [[nodiscard]] const std::vector<ParentKey>& all() const { return keys_; }

private:
    std::vector<ParentKey> keys_;
};

/// Which rows a load reads.
enum class Rows : std::uint8_t {
    all,
    of_items, ///< but those of pairs and those for each segment
};

/// What the parts of a load share.
struct LoadState {
    const Database& database;
    ProblemList& problems;
    const LoadOptions& options;
    std::string& table; ///< the one being read
    Rows reads = Rows::all;
    std::map<std::string, ParentKeys> keys{}; ///< of the tables that others refer to
    ParentKeys& segments = keys["segment"];
    std::vector<std::pair<Address, std::int64_t>>
        bottoms{}; ///< segments below others, to be checked when all are known
    std::uint64_t rows = 0;

    /// True while no problem is known. Only then is an item's place in its vector sure to be its number less 1, so
    /// only then may anything be put into the model; after it, rows are read for their problems alone.
    [[nodiscard]] bool sound() const { return problems.empty(); }
};

/// Reads a table's rows in key order. Keys that are no integers, that have gaps or duplicates within their parent and
/// parents that do not exist are reported as they pass; so is every column that cannot become its field. A column
/// that was reported reads as 0 or "". The keys of a table that others may refer to are kept for them.
class TableReader {
public:
    TableReader(LoadState& load, std::string_view table);

    bool next();

    /// True on the first row of another parent than the row before.
    [[nodiscard]] bool enters_parent() const { return enters_parent_; }
    /// True when the keys are integers. The other key functions need it.
    [[nodiscard]] bool has_key() const { return has_key_; }
    [[nodiscard]] std::int64_t number() const { return keys_[depth_]; }
    [[nodiscard]] ParentKey parent() const { return parent_; }
    [[nodiscard]] const RowNumbers& numbers() const { return keys_; }

    [[nodiscard]] std::string_view table() const { return shape_.name; }
    /// How many key columns name the parent.
    [[nodiscard]] std::size_t depth() const { return depth_; }
    /// The rows that those must name. Needs a depth.
    [[nodiscard]] const ParentKeys& parents() const { return *parents_; }

    /// Reads all columns of a table into an item of it.
    template <class Table, class Item>
    void read(const Table& table, Item& item)
    {
        for (const auto& column : table.columns) {
            with_value(column, item, [&](auto& value) { read_value(column, value); });
        }
    }
    /// A column is found without a search when it is asked for in the schema's order.
    [[nodiscard]] float real(std::string_view column);

    /// Reports the current row.
    void report(std::string_view column, std::string value, const std::string& message, std::string remedy);
    /// A datum of the current row. Of a key that is no integer, the numbers before it.
    [[nodiscard]] Address address(std::string_view column) const;

private:
    void read_keys();
    void check_parent();
    void check_number();
    [[nodiscard]] int find(std::string_view column);
    void read_value(const ColumnText& column, std::int32_t& value);
    void read_value(const ColumnText& column, float& value) { value = real(column.name); }
    void read_value(const ColumnText& column, bool& value);
    void read_value(const ColumnText& column, std::string& value);
    [[nodiscard]] std::optional<std::int32_t> integer(std::string_view column);
    [[nodiscard]] std::string value_in_words(int column) const;
    [[nodiscard]] float single_precision(std::string_view column, int index);

    LoadState& load_;
    const TableShape& shape_;
    std::size_t depth_;
    bool counts_segments_; ///< whether the last key is a segment's number
    const ParentKeys* parents_;
    ParentKeys* own_;
    Statement statement_;
    std::map<std::int32_t, std::string> unique_; ///< the rows of what has to be so, in words
    RowNumbers keys_{};
    ParentKey parent_{};
    std::int64_t expected_ = 1;
    std::size_t next_column_ = 0;
    bool has_key_ = false;
    bool enters_parent_ = false;
    bool first_row_ = true;
};

/// Reports a datum that names a segment which does not exist.
void check_segment(LoadState& load, const Address& datum, std::int64_t segment);

} // namespace velm
