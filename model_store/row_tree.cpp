#include "model_store/row_tree.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace velm {
namespace {

constexpr char leaf = 0x0A;
constexpr char inner = 0x02;
constexpr std::size_t leaf_header = 8;
constexpr std::size_t inner_header = 12;
constexpr std::size_t bytes_for_position = 2; ///< of a row within its page
constexpr std::size_t bytes_for_page = 4;
constexpr std::size_t bytes_for_real = 8;
constexpr char type_of_real = 7;

char* put_number(char* to, std::uint64_t number, std::size_t bytes)
{
    for (std::size_t shift = 8 * bytes; shift != 0;) {
        shift -= 8;
        *to++ = static_cast<char>(number >> shift & 0xFFU);
    }
    return to;
}

char* put_real(char* to, float value)
{
    return put_number(to, std::bit_cast<std::uint64_t>(double{value}), bytes_for_real);
}

/// Integers are kept in 1, 2, 3, 4 or 6 bytes with a sign.
std::size_t bytes_for(std::uint64_t number)
{
    const auto bytes = static_cast<std::size_t>(std::bit_width(number)) / 8 + 1;
    return bytes == 5 ? 6 : bytes;
}

/// The type that a record names for an integer of so many bytes: 1 to 4, and 5 for 6 bytes.
char type_of_integer(std::size_t bytes)
{
    return static_cast<char>(std::min<std::size_t>(bytes, 5));
}

/// What a page begins with, and the positions of its `rows`, each of `row_size` bytes, up to the page's end. Returns
/// where the first row goes.
char* put_header(std::span<char> page, char type, std::size_t rows, std::size_t row_size)
{
    const std::size_t first_position = page.size() - rows * row_size;
    char* to = page.data();
    *to++ = type;
    to = put_number(to, 0, 2); // no free space between rows
    to = put_number(to, rows, bytes_for_position);
    to = put_number(to, first_position, bytes_for_position);
    to = put_number(to, 0, 1);
    if (type == inner) {
        to += bytes_for_page; // set by the caller
    }
    for (std::size_t row = 0; row < rows; ++row) {
        to = put_number(to, first_position + row * row_size, bytes_for_position);
    }
    std::fill(to, page.data() + first_position, '\0');
    return page.data() + first_position;
}

} // namespace

RowTree::RowTree(const NumberedTable& table, const PageNumbering& numbering, std::uint64_t first_index)
    : table_(table), numbering_(numbering), first_index_(first_index), reals_(table.reals())
{
    std::array<std::uint64_t, 2> largest_keys{};
    std::uint64_t largest_count = 0;
    std::uint64_t rows = 0;
    for (const NumberedRows& run : table.rows) {
        for (std::size_t key = 0; key < largest_keys.size(); ++key) {
            largest_keys[key] = std::max(largest_keys[key], run.key[key]);
        }
        largest_count = std::max<std::uint64_t>(largest_count, run.count);
        first_rows_.push_back(rows);
        rows += run.count;
    }
    first_rows_.push_back(rows);
    for (std::size_t key = 0; key < table.shared_keys(); ++key) {
        key_sizes_.push_back(bytes_for(largest_keys.at(key)));
    }
    key_sizes_.push_back(bytes_for(largest_count));
    make_head();
    add_levels();
}

/// A record begins with the types of its columns, and before it stand its size and theirs.
void RowTree::make_head()
{
    std::vector<char> types;
    std::size_t bytes = reals_ * bytes_for_real;
    for (const std::size_t size : key_sizes_) {
        types.push_back(type_of_integer(size));
        bytes += size;
    }
    types.insert(types.end(), reals_, type_of_real);
    const std::size_t head = 1 + types.size();
    head_.push_back(static_cast<char>(head + bytes));
    head_.push_back(static_cast<char>(head));
    head_.insert(head_.end(), types.begin(), types.end());
    row_size_ = head_.size() + bytes;
}

void RowTree::add_levels()
{
    const std::size_t most_in_leaf = (numbering_.page_size - leaf_header) / (bytes_for_position + row_size_);
    const std::size_t most_in_inner =
        (numbering_.page_size - inner_header) / (bytes_for_position + bytes_for_page + row_size_);
    const auto pages_for = [](std::uint64_t places, std::size_t most_rows) {
        const std::uint64_t most_places = most_rows + 1;
        return (places + most_places - 1) / most_places;
    };
    const std::uint64_t places = first_rows_.back() + 1; // after the last leaf no row goes up
    levels_.push_back({places, pages_for(places, most_in_leaf), 0});
    while (levels_.back().pages > 1) {
        const Level below = levels_.back();
        levels_.push_back({below.pages, pages_for(below.pages, most_in_inner), below.first_page + below.pages});
    }
    added_pages_ = levels_.back().first_page;
}

RowTree::Row RowTree::row_at(std::uint64_t row) const
{
    const auto after = std::upper_bound(first_rows_.begin(), first_rows_.end(), row);
    const auto run = static_cast<std::size_t>(after - first_rows_.begin()) - 1;
    return {run, static_cast<std::size_t>(row - first_rows_[run])};
}

RowTree::Row RowTree::row_after(Row row) const
{
    const bool ends_run = row.row + 1 == table_.rows[row.run].count;
    return ends_run ? Row{row.run + 1, 0} : Row{row.run, row.row + 1};
}

std::uint64_t RowTree::row_above(std::size_t level, std::uint64_t page) const
{
    for (; level != 0; --level) {
        page = levels_[level].begin(page + 1) - 1;
    }
    return levels_[0].begin(page + 1) - 1;
}

char* RowTree::put_row(char* to, Row row) const
{
    const NumberedRows& run = table_.rows[row.run];
    to = std::copy(head_.begin(), head_.end(), to);
    const std::size_t shared_keys = key_sizes_.size() - 1;
    for (std::size_t key = 0; key < shared_keys; ++key) {
        to = put_number(to, run.key[key], key_sizes_[key]);
    }
    to = put_number(to, row.row + 1, key_sizes_.back());
    for (std::size_t real = 0; real < reals_; ++real) {
        to = put_real(to, run.reals[real][row.row]);
    }
    return to;
}

void RowTree::make_leaf(std::uint64_t page_of_level, std::span<char> page) const
{
    const std::uint64_t first = levels_[0].begin(page_of_level);
    const std::uint64_t end = levels_[0].begin(page_of_level + 1) - 1;
    char* to = put_header(page, leaf, static_cast<std::size_t>(end - first), row_size_);
    Row row = row_at(first);
    for (std::uint64_t place = first; place < end; ++place) {
        to = put_row(to, row);
        row = row_after(row);
    }
}

void RowTree::make_inner(std::size_t level, std::uint64_t page_of_level, std::span<char> page) const
{
    const std::uint64_t first = levels_[level].begin(page_of_level);
    const std::uint64_t last = levels_[level].begin(page_of_level + 1) - 1;
    const auto number_of = [&](std::uint64_t child) {
        return numbering_.number(first_index_ + levels_[level - 1].first_page + child);
    };
    char* to = put_header(page, inner, static_cast<std::size_t>(last - first), bytes_for_page + row_size_);
    put_number(page.data() + leaf_header, number_of(last), bytes_for_page);
    for (std::uint64_t child = first; child < last; ++child) {
        to = put_number(to, number_of(child), bytes_for_page);
        to = put_row(to, row_at(row_above(level - 1, child)));
    }
}

void RowTree::make_page(std::uint64_t index, std::span<char> page) const
{
    const auto of_level = std::find_if(levels_.rbegin(), levels_.rend(),
                                       [index](const Level& level) { return level.first_page <= index; });
    const std::uint64_t page_of_level = index - of_level->first_page;
    const auto level = static_cast<std::size_t>(levels_.rend() - of_level) - 1;
    if (level == 0) {
        make_leaf(page_of_level, page);
    } else {
        make_inner(level, page_of_level, page);
    }
}

} // namespace velm
