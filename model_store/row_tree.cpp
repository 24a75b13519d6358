#include "model_store/row_tree.hpp"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace velm {
namespace {

constexpr char leaf = 0x0A;
constexpr char inner = 0x02;
constexpr std::size_t leaf_header = 8;
constexpr std::size_t inner_header = 12;      ///< with the number of the last page below
constexpr std::size_t bytes_for_position = 2; ///< of a row within its page
constexpr std::size_t bytes_for_page = 4;
constexpr std::size_t bytes_for_real = 8;
constexpr char type_of_real = 7;

template <std::size_t bytes>
char* put_number(char* to, std::uint64_t number)
{
    for (std::size_t shift = 8 * bytes; shift != 0;) {
        shift -= 8;
        *to++ = static_cast<char>(number >> shift & 0xFFU);
    }
    return to;
}

/// Notes the type of an integer, which tells its size, and writes it: in 1, 2, 3, 4 or 6 bytes with a sign.
char* put_integer(char* to, char& type, std::uint64_t number)
{
    switch (std::bit_width(number) / 8) {
    case 0: type = 1; return put_number<1>(to, number);
    case 1: type = 2; return put_number<2>(to, number);
    case 2: type = 3; return put_number<3>(to, number);
    case 3: type = 4; return put_number<4>(to, number);
    default: type = 5; return put_number<6>(to, number);
    }
}

char* put_real(char* to, char& type, float value)
{
    type = type_of_real;
    return put_number<bytes_for_real>(to, std::bit_cast<std::uint64_t>(double{value}));
}

} // namespace

RowTree::Page::Page(std::size_t size, char type)
    : bytes(size), header(type == leaf ? leaf_header : inner_header), first_byte(size)
{
    bytes[0] = type;
}

bool RowTree::Page::has_room(std::size_t size) const
{
    return header + (rows + 1) * bytes_for_position + size <= first_byte;
}

char* RowTree::Page::add(std::size_t size)
{
    first_byte -= size;
    put_number<bytes_for_position>(&bytes[header + rows++ * bytes_for_position], first_byte);
    return &bytes[first_byte];
}

RowTree::Row RowTree::Page::take_last()
{
    Row row;
    row.size = static_cast<std::size_t>(bytes[first_byte]) + 1;
    std::memcpy(row.bytes.data(), &bytes[first_byte], row.size);
    first_byte += row.size;
    --rows;
    return row;
}

void RowTree::Page::close()
{
    constexpr std::size_t place_of_count = 3;
    char* const to = put_number<bytes_for_position>(&bytes[place_of_count], rows);
    put_number<bytes_for_position>(to, first_byte);
    std::fill(&bytes[header + rows * bytes_for_position], bytes.data() + first_byte, '\0');
}

void RowTree::Page::clear()
{
    rows = 0;
    first_byte = bytes.size();
}

RowTree::RowTree(PagedFile& file, const TableShape& table, std::uint64_t root)
    : file_(file), shared_keys_(table.keys - 1), reals_(table.columns.size() - table.keys), root_(root),
      leaf_(file.page_size(), leaf)
{
}

/// A record is the size of its head, the types of its columns and the columns; the record's size stands before it.
RowTree::Row RowTree::encoded(const NumberedRows& rows, std::size_t row) const
{
    Row made;
    const std::size_t head = 2 + shared_keys_ + reals_;
    char* type = made.bytes.data() + 2;
    char* to = made.bytes.data() + 1 + head;
    for (std::size_t key = 0; key < shared_keys_; ++key) {
        to = put_integer(to, *type++, rows.key[key]);
    }
    to = put_integer(to, *type++, rows.first_number + row);
    for (std::size_t real = 0; real < reals_; ++real) {
        to = put_real(to, *type++, rows.reals[real][row]);
    }
    made.size = static_cast<std::size_t>(to - made.bytes.data());
    made.bytes[0] = static_cast<char>(made.size - 1);
    made.bytes[1] = static_cast<char>(head);
    return made;
}

void RowTree::add(const NumberedRows& rows)
{
    for (std::size_t row = 0; row < rows.count; ++row) {
        put(encoded(rows, row));
    }
    rows_ += rows.count;
}

void RowTree::put(const Row& row)
{
    if (after_leaf_) {
        end_leaf(*after_leaf_);
        after_leaf_.reset();
    }
    if (leaf_.has_room(row.size)) {
        std::memcpy(leaf_.add(row.size), row.bytes.data(), row.size);
    } else {
        after_leaf_ = row;
    }
}

void RowTree::end_leaf(const Row& following)
{
    const std::uint64_t number = file_.add_page();
    leaf_.close();
    file_.write(number, leaf_.bytes);
    leaf_.clear();
    dividers_.push_back({number, following});
}

/// No page may be without rows, so a row that is alone behind a full leaf sends the one before it up.
void RowTree::finish()
{
    if (rows_ == 0) {
        return;
    }
    if (after_leaf_) {
        end_leaf(leaf_.take_last());
        std::memcpy(leaf_.add(after_leaf_->size), after_leaf_->bytes.data(), after_leaf_->size);
    }
    leaf_.close();
    if (dividers_.empty()) {
        return file_.write(root_, leaf_.bytes);
    }
    std::uint64_t last_page = file_.add_page();
    file_.write(last_page, leaf_.bytes);
    std::size_t largest = 0;
    for (const Divider& divider : dividers_) {
        largest = std::max(largest, divider.row.size);
    }
    const std::size_t most_rows = (file_.page_size() - inner_header) / (bytes_for_position + bytes_for_page + largest);
    while (dividers_.size() > most_rows) {
        add_level(most_rows, last_page);
    }
    write_inner(root_, dividers_, last_page);
}

/// Puts the pages of the highest level so far, evenly, under as few new ones as have room for them.
void RowTree::add_level(std::size_t most_rows, std::uint64_t& last_page)
{
    const std::size_t below = dividers_.size() + 1;
    const std::size_t pages = (below + most_rows) / (most_rows + 1);
    std::vector<Divider> between;
    std::size_t first = 0;
    for (std::size_t page = 1; page < pages; ++page) {
        const std::size_t last = page * below / pages - 1;
        const std::uint64_t number = file_.add_page();
        write_inner(number, std::span(dividers_).subspan(first, last - first), dividers_[last].page);
        between.push_back({number, dividers_[last].row});
        first = last + 1;
    }
    const std::uint64_t number = file_.add_page();
    write_inner(number, std::span(dividers_).subspan(first), last_page);
    last_page = number;
    dividers_ = std::move(between);
}

void RowTree::write_inner(std::uint64_t number, std::span<const Divider> dividers, std::uint64_t last_page)
{
    Page page(file_.page_size(), inner);
    for (const auto& [before, row] : dividers) {
        char* const to = put_number<bytes_for_page>(page.add(bytes_for_page + row.size), before);
        std::memcpy(to, row.bytes.data(), row.size);
    }
    page.close();
    put_number<bytes_for_page>(&page.bytes[leaf_header], last_page);
    file_.write(number, page.bytes);
}

} // namespace velm
