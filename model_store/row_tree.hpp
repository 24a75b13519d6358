#pragma once

#include "model_store/numbered_rows.hpp"
#include "model_store/paged_file.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace velm {

/// Fills an empty table with numbered rows, page by page, as they come.
///
/// SQLite's file format keeps the rows of a table without row numbers in a tree of pages: leaves hold rows in the order
/// of their keys, the row between two leaves stands in the page above, beside the number of the leaf before it, and so
/// on up to one page, the root. https://www.sqlite.org/fileformat2.html has the layout of pages (1.6) and of records
/// (2.1); that format does not change.
class RowTree {
public:
    /// A table whose root is page `root` of `file`, which outlives this.
    RowTree(PagedFile& file, const TableShape& table, std::uint64_t root);

    /// Adds rows; their keys come after those of all rows before.
    void add(const NumberedRows& rows);
    /// Writes what is above the leaves; nothing can be added afterwards.
    void finish();

    [[nodiscard]] std::uint64_t rows() const { return rows_; }

private:
    /// A row as the file has it.
    struct Row {
        static constexpr std::size_t most_bytes = 48;
        std::array<char, most_bytes> bytes{};
        std::size_t size = 0;
    };
    /// The row between two pages, and the page before it.
    struct Divider {
        std::uint64_t page = 0;
        Row row;
    };
    /// A page in the making: from its beginning where its rows stand, from its end the rows.
    struct Page {
        Page(std::size_t size, char type);
        [[nodiscard]] bool has_room(std::size_t size) const;
        char* add(std::size_t size); ///< room for the next row
        Row take_last();             ///< of a leaf
        void close();                ///< completes the page's header
        void clear();

        std::vector<char> bytes;
        std::size_t header;
        std::size_t rows = 0;
        std::size_t first_byte; ///< of the last row
    };

    [[nodiscard]] Row encoded(const NumberedRows& rows, std::size_t row) const;
    void put(const Row& row);
    void end_leaf(const Row& following);
    void add_level(std::size_t most_rows, std::uint64_t& last_page);
    void write_inner(std::uint64_t number, std::span<const Divider> dividers, std::uint64_t last_page);

    PagedFile& file_;
    std::size_t shared_keys_;
    std::size_t reals_;
    std::uint64_t root_;
    std::uint64_t rows_ = 0;
    Page leaf_;
    std::optional<Row> after_leaf_; ///< what leaf_ has no room for; goes up when another row follows
    std::vector<Divider> dividers_; ///< between the pages of the highest level so far
};

} // namespace velm
