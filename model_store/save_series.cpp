#include "model_store/save_series.hpp"

#include "model_store/model_store.hpp"
#include "model_store/series_tree.hpp"
#include "model_store/sqlite_database.hpp"
#include "model_store/table_shape.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <fstream>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace velm {
namespace {

constexpr std::size_t any_number_of_pairs = std::numeric_limits<std::int32_t>::max();

struct SeriesTable {
    std::string name;
    std::size_t most_pairs = any_number_of_pairs; ///< of one series
    std::vector<KeyedSeries> series{};            ///< in the order of their keys, none empty
};

template <class Parents, class ItemsOf>
SeriesTable with_series(SeriesTable table, const Parents& parents, const ItemsOf& items_of)
{
    for (std::uint64_t parent_number = 1; const auto& parent : parents) {
        for (std::uint64_t number = 1; const auto& item : items_of(parent)) {
            if (!item.series.times.empty() || !item.series.values.empty()) {
                table.series.push_back({{parent_number, number}, &item.series});
            }
            ++number;
        }
        ++parent_number;
    }
    return table;
}

std::vector<SeriesTable> series_tables(const Model& model)
{
    const auto boundaries_of = [](const System& system) -> const auto&
    {
        return system.boundaries.items;
    };
    const auto loads_of = [](const System& system) -> const auto&
    {
        return system.loads.items;
    };
    const auto functions_of = [](const auto& field) -> const auto&
    {
        return field.functions;
    };
    const auto instances_of = [](const auto& type) -> const auto&
    {
        return type.instances;
    };
    return {with_series({"boundary_value", SegmentSeries::most_pairs}, model.systems, boundaries_of),
            with_series({"load_value", SegmentSeries::most_pairs}, model.systems, loads_of),
            with_series({"flow_value"}, model.flow_fields, functions_of),
            with_series({"exchange_value"}, model.exchange_fields, functions_of),
            with_series({"time_function_value"}, model.time_function_types, instances_of)};
}

[[noreturn]] void refuse(const TableShape& table, std::span<const std::uint64_t> key, std::string_view column,
                         std::string value, std::string message, std::string remedy)
{
    throw StoreError({{table.name, table.row_in_words(key), std::string(column), std::move(value), std::move(message),
                       std::move(remedy)}},
                     false);
}

void check_numbers(const std::vector<float>& numbers, const TableShape& table, const SeriesKey& key,
                   std::string_view column)
{
    const auto is_finite = [](float number) { return std::isfinite(number); };
    const auto found = std::find_if_not(numbers.begin(), numbers.end(), is_finite);
    if (found != numbers.end()) {
        const auto pair = static_cast<std::uint64_t>(found - numbers.begin()) + 1;
        const std::array pair_key = {key[0], key[1], pair};
        refuse(table, pair_key, column, std::to_string(*found), "is not finite", "store a finite number");
    }
}

void check_table(const SeriesTable& checked)
{
    const TableShape& table = model_table(checked.name);
    for (const auto& [key, series] : checked.series) {
        const std::size_t pairs = series->times.size();
        if (pairs != series->values.size()) {
            refuse(table, key, "", "",
                   "there are " + std::to_string(pairs) + " times and " + std::to_string(series->values.size()) +
                       " values",
                   "give as many of both");
        }
        if (pairs > checked.most_pairs) {
            refuse(table, key, "", "", "there are " + std::to_string(pairs) + " pairs",
                   "thin the series out to at most " + std::to_string(checked.most_pairs));
        }
        check_numbers(series->times, table, key, table.columns[3]);
        check_numbers(series->values, table, key, table.columns[4]);
    }
}

/// A database file that has no other user: bytes that go to places of their own.
class RawFile {
public:
    explicit RawFile(const std::filesystem::path& file) : stream_(file, std::ios::binary | std::ios::in | std::ios::out)
    {
        check();
    }
    void write(std::uint64_t place, std::span<const char> bytes)
    {
        stream_.seekp(static_cast<std::streamoff>(place));
        stream_.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        check();
    }
    /// In the file's header.
    void write_page_count(std::uint64_t pages)
    {
        constexpr std::uint64_t place = 28;
        const auto byte = [pages](unsigned shift) { return static_cast<char>(pages >> shift & 0xFFU); };
        write(place, std::array{byte(24), byte(16), byte(8), byte(0)});
    }
    void close()
    {
        stream_.close();
        check();
    }

private:
    void check() const
    {
        if (!stream_) {
            throw std::system_error(errno, std::generic_category());
        }
    }

    std::fstream stream_;
};

void write_tree(RawFile& file, const SeriesTree& tree, const PageNumbering& numbering, std::uint64_t first_index,
                std::uint64_t root)
{
    constexpr std::size_t pages_at_once = 256;
    const std::size_t size = numbering.page_size;
    std::vector<char> pages(pages_at_once * size);
    for (std::uint64_t index = 0; index < tree.added_pages();) {
        const std::uint64_t number = numbering.number(first_index + index);
        std::size_t made = 0;
        while (made < pages_at_once && index < tree.added_pages() &&
               numbering.number(first_index + index) == number + made) {
            tree.make_page(index++, std::span(pages).subspan(made++ * size, size));
        }
        file.write((number - 1) * size, std::span(pages).first(made * size));
    }
    tree.make_page(tree.added_pages(), std::span(pages).first(size));
    file.write((root - 1) * size, std::span(pages).first(size));
}

/// The root pages of the tables, in their order.
std::vector<std::uint64_t> root_pages(const Database& database, const std::vector<SeriesTable>& tables)
{
    std::vector<std::uint64_t> roots;
    for (const SeriesTable& table : tables) {
        const std::string sql = "SELECT rootpage FROM sqlite_schema WHERE name = '" + table.name + "'";
        roots.push_back(static_cast<std::uint64_t>(database.integer(sql.c_str())));
    }
    return roots;
}

PageNumbering numbering_after(const Database& database)
{
    return {static_cast<std::size_t>(database.integer("PRAGMA page_size")),
            static_cast<std::uint64_t>(database.integer("PRAGMA page_count")) + 1};
}

/// Lets SQLite itself go through all pages.
void count_rows(const Database& database, const std::vector<SeriesTable>& tables)
{
    database.run("PRAGMA cell_size_check = ON");
    for (const SeriesTable& table : tables) {
        std::uint64_t pairs = 0;
        for (const KeyedSeries& keyed : table.series) {
            pairs += keyed.series->times.size();
        }
        const std::string sql = "SELECT count(*) FROM " + table.name;
        if (static_cast<std::uint64_t>(database.integer(sql.c_str())) != pairs) {
            throw SqliteError(SQLITE_CORRUPT, "table " + table.name + " has not the rows that were written");
        }
    }
}

} // namespace

void check_series(const Model& model)
{
    for (const SeriesTable& table : series_tables(model)) {
        check_table(table);
    }
}

void save_series(const Model& model, const std::filesystem::path& file)
{
    const std::vector<SeriesTable> tables = series_tables(model);
    std::optional<Database> database(std::in_place, file, SQLITE_OPEN_READONLY);
    const std::vector<std::uint64_t> roots = root_pages(*database, tables);
    const PageNumbering numbering = numbering_after(*database);
    database.reset();

    RawFile raw(file);
    std::uint64_t added_pages = 0;
    for (std::size_t i = 0; i < tables.size(); ++i) {
        if (!tables[i].series.empty()) {
            const SeriesTree tree(tables[i].series, numbering, added_pages);
            write_tree(raw, tree, numbering, added_pages, roots[i]);
            added_pages += tree.added_pages();
        }
    }
    if (added_pages != 0) {
        raw.write_page_count(numbering.number(added_pages - 1));
    }
    raw.close();

    count_rows(Database(file, SQLITE_OPEN_READONLY), tables);
}

} // namespace velm
