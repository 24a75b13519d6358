#include "model_store/load/table_reader.hpp"

#include "model_store/latin1.hpp"
#include "plain_text/plain_text.hpp"

#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <utility>

namespace velm {

namespace {

constexpr std::int64_t largest_integer = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t smallest_integer = std::numeric_limits<std::int32_t>::min();

constexpr const char* numbering = "number the rows from 1 without gaps";

std::string key_order(std::size_t keys)
{
    std::string list = "1";
    for (std::size_t key = 2; key <= keys; ++key) {
        list += ", " + std::to_string(key);
    }
    return list;
}

/// As SQL writes it: with a point even when nothing follows it.
std::string shortest(double value)
{
    std::array<char, 32> digits{};
    std::string text(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr);
    return text.find_first_not_of("-0123456789") == std::string::npos ? text + ".0" : text;
}

} // namespace

TableReader::TableReader(LoadState& load, std::string_view table)
    : load_(load), shape_(model_table(load.table = table)), depth_(shape_.keys - 1),
      counts_segments_(shape_.columns[depth_] == "segment"),
      parents_(depth_ > 0 ? &load.keys[shape_.columns[depth_ - 1]] : nullptr), // called after the tables they name
      own_(depth_ < 2 && !counts_segments_ ? &load.keys[shape_.name] : nullptr),
      statement_(load.database,
                 "SELECT " + shape_.column_list() + " FROM " + shape_.name + " ORDER BY " + key_order(shape_.keys))
{
}

bool TableReader::next()
{
    constexpr std::uint64_t rows_between_reports = 1U << 16U;
    if (!statement_.step()) {
        return false;
    }
    if (++load_.rows % rows_between_reports == 0 && load_.options.on_progress) {
        load_.options.on_progress(load_.rows);
    }
    next_column_ = 0;
    read_keys();
    if (has_key_) {
        check_parent();
        check_number();
        if (own_ != nullptr) {
            own_->add(depth_ == 0 ? ParentKey{keys_[0], 0} : ParentKey{keys_[0], keys_[1]});
        }
    }
    return true;
}

void TableReader::read_keys()
{
    has_key_ = true;
    for (std::size_t key = 0; key <= depth_; ++key) {
        const int column = static_cast<int>(key);
        if (sqlite3_column_type(statement_.handle(), column) == SQLITE_INTEGER) {
            keys_.at(key) = sqlite3_column_int64(statement_.handle(), column);
        } else {
            has_key_ = false;
            report(shape_.columns[key], value_in_words(column), "is not an integer", "store an integer");
        }
    }
}

void TableReader::check_parent()
{
    const ParentKey parent{depth_ > 0 ? keys_[0] : 0, depth_ > 1 ? keys_[1] : 0};
    enters_parent_ = first_row_ || parent != parent_;
    first_row_ = false;
    if (!enters_parent_) {
        return;
    }
    parent_ = parent;
    expected_ = 1;
    if (parents_ != nullptr && !parents_->contains(parent)) {
        const std::string& column = shape_.columns[depth_ - 1];
        report(column, std::to_string(keys_.at(depth_ - 1)), "names no row of table " + column,
               "add that row or remove this one");
    }
}

void TableReader::check_number()
{
    const std::string& column = shape_.columns[depth_];
    const std::int64_t number = this->number();
    if (counts_segments_ && !load_.segments.contains({number, 0})) {
        check_segment(load_, address(column), number);
    } else if (number == expected_) {
        ++expected_;
    } else if (number < 1) {
        report(column, std::to_string(number), "is below 1", numbering);
    } else if (number > largest_integer) {
        report(column, std::to_string(number), "is beyond 32 bits", numbering);
    } else if (number < expected_) {
        report(column, std::to_string(number), "is there more than once", numbering);
    } else {
        report(column, std::to_string(number), "is there, but " + std::to_string(expected_) + " is missing",
               counts_segments_ ? "give a row for each segment" : numbering);
        expected_ = number + 1;
    }
}

int TableReader::find(std::string_view column)
{
    const std::size_t columns = shape_.columns.size();
    for (std::size_t tried = 0; tried < columns; ++tried) {
        if (const std::size_t index = next_column_++ % columns; shape_.columns[index] == column) {
            return static_cast<int>(index);
        }
    }
    throw std::logic_error("the schema has no " + shape_.name + '.' + std::string(column)); // until ./dev tables
}

std::optional<std::int32_t> TableReader::integer(std::string_view column)
{
    const int index = find(column);
    if (sqlite3_column_type(statement_.handle(), index) != SQLITE_INTEGER) {
        report(column, value_in_words(index), "is not an integer", "store an integer");
        return {};
    }
    const std::int64_t value = sqlite3_column_int64(statement_.handle(), index);
    if (value < smallest_integer || value > largest_integer) {
        report(column, std::to_string(value), "is beyond 32 bits", "store a number from -2147483648 to 2147483647");
        return {};
    }
    return static_cast<std::int32_t>(value);
}

void TableReader::read_value(const ColumnText& column, std::int32_t& value)
{
    const std::optional<std::int32_t> found = integer(column.name);
    const bool must_be_segment =
        column.rule == Rule::segment || (column.rule == Rule::segment_or_outside && found.value_or(0) != 0);
    value = found.value_or(0);
    if (found && must_be_segment) {
        check_segment(load_, address(column.name), value);
    } else if (column.rule == Rule::segment_below && value != 0) {
        load_.bottoms.emplace_back(address(column.name), value);
    } else if (found && column.rule == Rule::unique) {
        const auto [holder, is_new] = unique_.try_emplace(value, row_in_words(address(column.name)));
        if (!is_new) {
            report(column.name, std::to_string(value), "is also the ISC number of " + holder->second,
                   "give each type its own");
        }
    }
}

void TableReader::read_value(const ColumnText& column, bool& value)
{
    const std::optional<std::int32_t> found = integer(column.name);
    if (found && *found != 0 && *found != 1) {
        report(column.name, std::to_string(*found), "is neither 0 nor 1", "store 1 for yes, 0 for no");
    }
    value = found == 1;
}

float TableReader::real(std::string_view column)
{
    const int index = find(column);
    const int type = sqlite3_column_type(statement_.handle(), index);
    if (type != SQLITE_FLOAT && type != SQLITE_INTEGER) {
        report(column, value_in_words(index), "is not a number", "store a number");
        return 0;
    }
    return single_precision(column, index);
}

float TableReader::single_precision(std::string_view column, int index)
{
    const double value = sqlite3_column_double(statement_.handle(), index);
    const auto served = static_cast<float>(value);
    if (!std::isfinite(value)) {
        report(column, value_in_words(index), "is not finite", "store a finite number");
    } else if (!std::isfinite(served)) {
        report(column, value_in_words(index), "is too large for single precision",
               "store a number within 3.4028234e38 of 0");
    } else if (served == 0 && value != 0) {
        report(column, value_in_words(index), "is too close to 0 for single precision",
               "store 0, or a number of at least 1.4e-45");
    } else {
        return served;
    }
    return 0;
}

/// In ISO 8859-1.
void TableReader::read_value(const ColumnText& column, std::string& value)
{
    const int index = find(column.name);
    value.clear();
    if (sqlite3_column_type(statement_.handle(), index) != SQLITE_TEXT) {
        report(column.name, value_in_words(index), "is not a text", "store a text, '' for none");
        return;
    }
    const std::string_view utf8 = statement_.text(index);
    Latin1Text latin1 = latin1_from_utf8(utf8);
    if (!latin1.valid_utf8) {
        report(column.name, printable(utf8, longest_quote), "is not UTF-8", "store the text in UTF-8");
    } else if (!latin1.foreign_character.empty()) {
        report(column.name, printable(utf8, longest_quote),
               "has the character " + latin1.foreign_character + ", which ISO 8859-1 lacks", "replace the character");
    } else if (utf8.find('\0') != std::string::npos) {
        report(column.name, printable(utf8, longest_quote), "has a NUL character", "remove it");
    } else if (utf8.find_first_of("\r\n") != std::string::npos) {
        report(column.name, printable(utf8, longest_quote), "has a line break", "keep the text on one line");
    } else if (latin1.text.size() > column.length) {
        report(column.name, printable(utf8, longest_quote), "has " + std::to_string(latin1.text.size()) + " characters",
               "shorten it to at most " + std::to_string(column.length));
    } else {
        value = std::move(latin1.text);
    }
}

void TableReader::report(std::string_view column, std::string value, const std::string& message, std::string remedy)
{
    load_.problems.add(database_finding(address(column), std::move(value), message, std::move(remedy)));
}

Address TableReader::address(std::string_view column) const
{
    Address address{shape_.name, column};
    for (std::size_t key = 0; key <= depth_; ++key) {
        const int at = static_cast<int>(key);
        const bool is_number = sqlite3_column_type(statement_.handle(), at) == SQLITE_INTEGER;
        address.numbers.at(key) = is_number ? sqlite3_column_int64(statement_.handle(), at) : 0;
    }
    return address;
}

/// What has no text of its own is described.
std::string TableReader::value_in_words(int column) const
{
    switch (sqlite3_column_type(statement_.handle(), column)) {
    case SQLITE_NULL: return "NULL";
    case SQLITE_BLOB: return "BLOB of " + std::to_string(sqlite3_column_bytes(statement_.handle(), column)) + " bytes";
    case SQLITE_INTEGER: return std::to_string(sqlite3_column_int64(statement_.handle(), column));
    case SQLITE_FLOAT: return shortest(sqlite3_column_double(statement_.handle(), column));
    default: return statement_.text(column).empty() ? "empty text" : printable(statement_.text(column), longest_quote);
    }
}

void check_segment(LoadState& load, const Address& datum, std::int64_t segment)
{
    if (!load.segments.contains({segment, 0})) {
        const std::size_t segments = load.segments.all().size();
        load.problems.add(database_finding(
            datum, std::to_string(segment), "is not a segment of the model",
            segments == 0 ? "add segments first" : "the segments are numbered from 1 to " + std::to_string(segments)));
    }
}

} // namespace velm
