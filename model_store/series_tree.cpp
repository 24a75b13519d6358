#include "model_store/series_tree.hpp"

#include <algorithm>
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
constexpr std::size_t columns = 5;

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

SeriesTree::SeriesTree(std::span<const KeyedSeries> series, const PageNumbering& numbering, std::uint64_t first_index)
    : series_(series), numbering_(numbering), first_index_(first_index)
{
    std::array<std::uint64_t, 3> largest{};
    std::uint64_t rows = 0;
    for (const KeyedSeries& keyed : series) {
        const std::uint64_t pairs = keyed.series->times.size();
        largest = {std::max(largest[0], keyed.key[0]), std::max(largest[1], keyed.key[1]), std::max(largest[2], pairs)};
        first_rows_.push_back(rows);
        rows += pairs;
    }
    first_rows_.push_back(rows);
    std::transform(largest.begin(), largest.end(), key_sizes_.begin(), bytes_for);
    // its size and the record: the sizes' and the columns' types, the key, both reals
    row_size_ = 1 + 1 + columns + key_sizes_[0] + key_sizes_[1] + key_sizes_[2] + 2 * bytes_for_real;
    add_levels();
}

void SeriesTree::add_levels()
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

SeriesTree::Row SeriesTree::row_at(std::uint64_t row) const
{
    const auto after = std::upper_bound(first_rows_.begin(), first_rows_.end(), row);
    const auto series = static_cast<std::size_t>(after - first_rows_.begin()) - 1;
    return {series, static_cast<std::size_t>(row - first_rows_[series])};
}

SeriesTree::Row SeriesTree::row_after(Row row) const
{
    const bool ends_series = row.pair + 1 == series_[row.series].series->times.size();
    return ends_series ? Row{row.series + 1, 0} : Row{row.series, row.pair + 1};
}

std::uint64_t SeriesTree::row_above(std::size_t level, std::uint64_t page) const
{
    for (; level != 0; --level) {
        page = levels_[level].begin(page + 1) - 1;
    }
    return levels_[0].begin(page + 1) - 1;
}

char* SeriesTree::put_row(char* to, Row row) const
{
    const KeyedSeries& keyed = series_[row.series];
    *to++ = static_cast<char>(row_size_ - 1);
    *to++ = 1 + columns;
    for (const std::size_t size : key_sizes_) {
        *to++ = type_of_integer(size);
    }
    *to++ = type_of_real;
    *to++ = type_of_real;
    to = put_number(to, keyed.key[0], key_sizes_[0]);
    to = put_number(to, keyed.key[1], key_sizes_[1]);
    to = put_number(to, row.pair + 1, key_sizes_[2]);
    to = put_real(to, keyed.series->times[row.pair]);
    return put_real(to, keyed.series->values[row.pair]);
}

void SeriesTree::make_leaf(std::uint64_t page_of_level, std::span<char> page) const
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

void SeriesTree::make_inner(std::size_t level, std::uint64_t page_of_level, std::span<char> page) const
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

void SeriesTree::make_page(std::uint64_t index, std::span<char> page) const
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
