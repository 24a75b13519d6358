#include "model_store/save/table_writer.hpp"

#include "model/real_in_words.hpp"
#include "model_store/latin1.hpp"
#include "model_store/model_store.hpp"

#include <cmath>
#include <utility>

namespace velm {

TableWriter::TableWriter(const Database& database, std::string_view table)
    : shape_(model_table(table)), one_(database, shape_.insertion(1)), many_(database, shape_.insertion(rows_at_once))
{
}

void TableWriter::begin(const RowNumbers& numbers)
{
    numbers_ = numbers;
    bound_ = 0;
    for (std::size_t key = 0; key < shape_.keys; ++key) {
        sqlite3_bind_int64(one_.handle(), ++bound_, numbers.at(key));
    }
}

void TableWriter::bind(std::string_view /*column*/, std::int32_t value)
{
    sqlite3_bind_int64(one_.handle(), ++bound_, value);
}

void TableWriter::bind(std::string_view column, float value)
{
    if (!std::isfinite(value)) {
        refuse(numbers_, column, real_in_words(value), "is not finite", "store a finite number");
    }
    sqlite3_bind_double(one_.handle(), ++bound_, value);
}

void TableWriter::bind(std::string_view column, bool value)
{
    bind(column, value ? 1 : 0);
}

void TableWriter::bind(std::string_view /*column*/, const std::string& latin1)
{
    const std::string utf8 = utf8_from_latin1(latin1);
    sqlite3_bind_text(one_.handle(), ++bound_, utf8.data(), static_cast<int>(utf8.size()), SQLITE_TRANSIENT);
}

void TableWriter::end()
{
    try {
        one_.step();
    } catch (const SqliteError& error) {
        if ((error.code & 0xFF) != SQLITE_CONSTRAINT) { // of the primary result code
            throw;
        }
        refuse(numbers_, "", "", error.what(), "change the model");
    }
    sqlite3_reset(one_.handle());
}

void TableWriter::add(const RowNumbers& numbers, std::span<const float> reals)
{
    Row& row = gathered_.emplace_back();
    row.numbers = numbers;
    for (std::size_t real = 0; real < reals.size(); ++real) {
        if (!std::isfinite(reals[real])) {
            refuse(numbers, shape_.columns[shape_.keys + real], real_in_words(reals[real]), "is not finite",
                   "store a finite number");
        }
        row.reals.at(real) = reals[real];
    }
    if (gathered_.size() == rows_at_once) {
        insert(many_, gathered_);
        gathered_.clear();
    }
}

void TableWriter::flush()
{
    for (const Row& row : gathered_) {
        insert(one_, {&row, 1});
    }
    gathered_.clear();
}

void TableWriter::insert(Statement& statement, std::span<const Row> rows)
{
    const std::size_t reals = shape_.columns.size() - shape_.keys;
    int column = 0;
    for (const Row& row : rows) {
        for (std::size_t key = 0; key < shape_.keys; ++key) {
            sqlite3_bind_int64(statement.handle(), ++column, row.numbers[key]);
        }
        for (std::size_t real = 0; real < reals; ++real) {
            sqlite3_bind_double(statement.handle(), ++column, row.reals[real]);
        }
    }
    statement.step();
    sqlite3_reset(statement.handle());
}

void TableWriter::refuse(const RowNumbers& numbers, std::string_view column, std::string value,
                         const std::string& message, std::string remedy) const
{
    throw StoreError({database_finding({shape_.name, column, numbers}, std::move(value), message, std::move(remedy))},
                     false);
}

} // namespace velm
