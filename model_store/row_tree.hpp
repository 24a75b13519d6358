#pragma once

#include "model_store/numbered_rows.hpp"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace velm {

/// How the pages of a database file are numbered, from 1 on.
struct PageNumbering {
    std::size_t page_size = 0; ///< bytes
    std::uint64_t first = 0;   ///< of those that are added: the one after the file's last

    /// The number of added page `index`, from 0. The page that holds byte 2^30 is left out: programs lock the file
    /// there.
    [[nodiscard]] std::uint64_t number(std::uint64_t index) const
    {
        const std::uint64_t locked = (std::uint64_t{1} << 30U) / page_size + 1;
        const std::uint64_t number = first + index;
        return first <= locked && number >= locked ? number + 1 : number;
    }
};

/// The pages of a table of numbered rows, made straight from what the rows hold.
///
/// SQLite's file format keeps the rows of a table without row numbers in a tree of pages: leaves hold rows in the order
/// of their keys, the row between two leaves stands in the page above, beside the number of the leaf before it, and so
/// on up to one page, the root. As all rows are known beforehand, in order, they can be spread evenly over as few pages
/// as hold them, and each page be made on its own. https://www.sqlite.org/fileformat2.html has the layout of pages
/// (1.6) and of records (2.1); that format does not change.
class RowTree {
public:
    /// `table` has at least one row and outlives the tree. Its pages but the root are the added pages from
    /// `first_index` on.
    RowTree(const NumberedTable& table, const PageNumbering& numbering, std::uint64_t first_index);

    /// How many pages there are beside the root.
    [[nodiscard]] std::uint64_t added_pages() const { return added_pages_; }
    /// Fills `page`, of a page's size, as added page `index`, from 0 within this tree; `added_pages()` is the root.
    void make_page(std::uint64_t index, std::span<char> page) const;

private:
    /// A row of pages of the same height. Each page takes a range of its level's places and the one row that follows
    /// the range goes up. A place is a row among the leaves, a page of the level below among the others.
    struct Level {
        std::uint64_t places = 0;
        std::uint64_t pages = 0;
        std::uint64_t first_page = 0; ///< index of its first page within the tree

        [[nodiscard]] std::uint64_t begin(std::uint64_t page) const { return page * places / pages; }
    };

    /// A row's place: which of the table's runs of rows, and which row of it, both from 0.
    struct Row {
        std::size_t run = 0;
        std::size_t row = 0;
    };

    void make_head();
    void add_levels();
    [[nodiscard]] Row row_at(std::uint64_t row) const;
    [[nodiscard]] Row row_after(Row row) const;
    [[nodiscard]] std::uint64_t row_above(std::size_t level, std::uint64_t page) const;
    char* put_row(char* to, Row row) const;
    void make_leaf(std::uint64_t page_of_level, std::span<char> page) const;
    void make_inner(std::size_t level, std::uint64_t page_of_level, std::span<char> page) const;

    const NumberedTable& table_;
    PageNumbering numbering_;
    std::uint64_t first_index_;
    std::vector<std::uint64_t> first_rows_; ///< of each run, and at the end the number of rows
    std::vector<std::size_t> key_sizes_;    ///< bytes that the numbers of each key column take
    std::vector<char> head_;                ///< what each row begins with
    std::size_t reals_;
    std::size_t row_size_ = 0;  ///< bytes of a row in a page
    std::vector<Level> levels_; ///< from the leaves up
    std::uint64_t added_pages_ = 0;
};

} // namespace velm
