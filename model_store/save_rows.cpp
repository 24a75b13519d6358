#include "model_store/save_rows.hpp"

#include "model_store/row_tree.hpp"
#include "model_store/sqlite_database.hpp"

#include <array>
#include <cerrno>
#include <fstream>
#include <future>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace velm {
namespace {

/// A database file that has no other user, as bytes at their places.
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

std::uint64_t root_page(const Database& database, const NumberedTable& table)
{
    const std::string sql = "SELECT rootpage FROM sqlite_schema WHERE name = '" + table.shape.name + "'";
    return static_cast<std::uint64_t>(database.integer(sql.c_str()));
}

PageNumbering numbering_after(const Database& database)
{
    return {static_cast<std::size_t>(database.integer("PRAGMA page_size")),
            static_cast<std::uint64_t>(database.integer("PRAGMA page_count")) + 1};
}

/// Makes pages while those before are being written.
void write_tree(RawFile& file, const RowTree& tree, const PageNumbering& numbering, std::uint64_t first_index,
                std::uint64_t root)
{
    constexpr std::size_t pages_at_once = 1024;
    const std::size_t size = numbering.page_size;
    std::vector<char> pages(pages_at_once * size);
    std::vector<char> pages_before(pages.size());
    std::future<void> writing;
    for (std::uint64_t index = 0; index < tree.added_pages();) {
        const std::uint64_t number = numbering.number(first_index + index);
        std::size_t made = 0;
        while (made < pages_at_once && index < tree.added_pages() &&
               numbering.number(first_index + index) == number + made) {
            tree.make_page(index++, std::span(pages).subspan(made++ * size, size));
        }
        if (writing.valid()) {
            writing.get();
        }
        pages.swap(pages_before);
        writing = std::async(std::launch::async,
                             [&file, place = (number - 1) * size, bytes = std::span(pages_before).first(made * size)] {
                                 file.write(place, bytes);
                             });
    }
    if (writing.valid()) {
        writing.get();
    }
    tree.make_page(tree.added_pages(), std::span(pages).first(size));
    file.write((root - 1) * size, std::span(pages).first(size));
}

/// Lets SQLite itself go through all pages.
void count_rows(const Database& database, std::span<const NumberedTable> tables)
{
    database.run("PRAGMA cell_size_check = ON");
    for (const NumberedTable& table : tables) {
        std::uint64_t written = 0;
        for (const NumberedRows& rows : table.rows) {
            written += rows.count;
        }
        const std::string sql = "SELECT count(*) FROM " + table.shape.name;
        if (static_cast<std::uint64_t>(database.integer(sql.c_str())) != written) {
            throw SqliteError(SQLITE_CORRUPT, "table " + table.shape.name + " has not the rows that were written");
        }
    }
}

} // namespace

void save_rows(std::span<const NumberedTable> tables, const std::filesystem::path& database)
{
    std::optional<Database> schema(std::in_place, database, SQLITE_OPEN_READONLY);
    std::vector<std::uint64_t> roots;
    for (const NumberedTable& table : tables) {
        roots.push_back(root_page(*schema, table));
    }
    const PageNumbering numbering = numbering_after(*schema);
    schema.reset();

    RawFile file(database);
    std::uint64_t added_pages = 0;
    for (std::size_t i = 0; i < tables.size(); ++i) {
        if (!tables[i].rows.empty()) {
            const RowTree tree(tables[i], numbering, added_pages);
            write_tree(file, tree, numbering, added_pages, roots[i]);
            added_pages += tree.added_pages();
        }
    }
    if (added_pages != 0) {
        file.write_page_count(numbering.number(added_pages - 1));
    }
    file.close();

    count_rows(Database(database, SQLITE_OPEN_READONLY), tables);
}

} // namespace velm
