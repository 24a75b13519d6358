#include "model_store/row_writer.hpp"

#include <algorithm>
#include <utility>

namespace velm {
namespace {

constexpr std::size_t rows_at_once = 65'536;

PagedFile paged(const std::filesystem::path& file, const Database& database)
{
    return {file, static_cast<std::size_t>(database.integer("PRAGMA page_size")),
            static_cast<std::uint64_t>(database.integer("PRAGMA page_count"))};
}

std::uint64_t row_count(const NumberedTable& table)
{
    std::uint64_t count = 0;
    for (const NumberedRows& rows : table.rows) {
        count += rows.count;
    }
    return count;
}

/// Lets SQLite itself go through all pages.
void count_rows(const std::filesystem::path& file, std::span<const NumberedTable> tables)
{
    const Database database(file, SQLITE_OPEN_READONLY);
    database.run("PRAGMA cell_size_check = ON");
    for (const NumberedTable& table : tables) {
        const std::string sql = "SELECT count(*) FROM " + table.shape.name;
        if (static_cast<std::uint64_t>(database.integer(sql.c_str())) != row_count(table)) {
            throw SqliteError(SQLITE_CORRUPT, "table " + table.shape.name + " has not the rows that were written");
        }
    }
}

} // namespace

RowWriter::RowWriter(const std::filesystem::path& database)
    : RowWriter(database, Database(database, SQLITE_OPEN_READONLY))
{
}

RowWriter::RowWriter(const std::filesystem::path& file, const Database& schema)
    : database_(file), file_(paged(file, schema))
{
    for (const TableShape& table : model_tables()) {
        const std::string sql = "SELECT rootpage FROM sqlite_schema WHERE name = '" + table.name + "'";
        const auto root = static_cast<std::uint64_t>(schema.integer(sql.c_str()));
        trees_.emplace(std::piecewise_construct, std::forward_as_tuple(table.name),
                       std::forward_as_tuple(file_, table, root));
    }
}

void RowWriter::add(std::string_view table, const std::array<std::uint64_t, 2>& key, const TimeSeries& series)
{
    RowTree& tree = trees_.find(table)->second;
    for (std::size_t first = 0; first < series.times.size(); first += rows_at_once) {
        const std::size_t count = std::min(rows_at_once, series.times.size() - first);
        gathered_.runs.push_back({&tree, {key, first + 1, count}});
        for (const std::vector<float>* numbers : {&series.times, &series.values}) {
            const auto begin = numbers->begin() + static_cast<std::ptrdiff_t>(first);
            gathered_.numbers.insert(gathered_.numbers.end(), begin, begin + static_cast<std::ptrdiff_t>(count));
        }
        if (gathered_.numbers.size() >= 2 * rows_at_once) {
            hand_over();
        }
    }
}

void RowWriter::hand_over()
{
    if (writing_.valid()) {
        writing_.get();
    }
    std::swap(gathered_, in_work_);
    gathered_.runs.clear();
    gathered_.numbers.clear();
    writing_ = std::async(std::launch::async, [this] { write(in_work_); });
}

void RowWriter::write(const Batch& batch)
{
    const float* numbers = batch.numbers.data();
    for (auto [tree, rows] : batch.runs) {
        rows.reals = {RealColumn(numbers), RealColumn(numbers + rows.count)};
        tree->add(rows);
        numbers += 2 * rows.count;
    }
}

void RowWriter::finish(std::span<const NumberedTable> tables)
{
    hand_over();
    writing_.get();
    for (const NumberedTable& table : tables) {
        RowTree& tree = trees_.find(table.shape.name)->second;
        if (tree.rows() == 0) {
            std::ranges::for_each(table.rows, [&](const NumberedRows& rows) { tree.add(rows); });
        }
        tree.finish();
    }
    file_.close();
    count_rows(database_, tables);
}

} // namespace velm
