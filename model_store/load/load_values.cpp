#include "model_store/load/load_values.hpp"

#include "model_store/load/load_parts.hpp"
#include "model_store/sqlite/table_shape.hpp"

#include <atomic>
#include <cmath>
#include <cstddef>
#include <exception>
#include <limits>
#include <map>
#include <new>
#include <span>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace velm {

namespace {

using Reals = std::span<const float>;

/// A table with up to two reals in each numbered row of an item, which is the only one of its owner or one of several.
struct ValueTable {
    std::string name;
    std::string columns; ///< owner, item, number and two reals; 1 and 0 stand for what the table does not have
    std::string owner;   ///< the key's first column
    std::vector<std::size_t> items{}; ///< of each owner
    /// Takes an item's reals; false when there are too many or too few. Items without rows are not told.
    std::function<bool(std::size_t owner, std::size_t item, Reals first, Reals second)> deliver{};
    bool every_item = false; ///< each has rows
};

/// A part of a table: the rows of one owner, counted from 0; those before the first and behind the last belong to
/// these.
struct Part {
    const ValueTable* table;
    std::size_t owner;
};

/// What both threads know of.
struct Work {
    std::vector<Part> parts{};
    std::atomic<std::size_t> next{0};
    std::atomic<std::uint64_t> rows{0};
    std::atomic<bool> sound{true};
};

/// Takes the rows of one part, which SQLite hands it in the order of their key.
class RowTaker {
public:
    RowTaker(const Part& part, Work& work, const std::function<void(std::uint64_t)>& on_progress)
        : table_(*part.table), owner_(part.owner), work_(work), on_progress_(on_progress)
    {
    }

    /// False when the row is not as it must be.
    bool take(sqlite3_value** row)
    {
        constexpr std::uint64_t rows_between_reports = 1U << 16U;
        const auto is_integer = [&](int column) { return sqlite3_value_type(row[column]) == SQLITE_INTEGER; };
        if (!is_integer(0) || !is_integer(1) || !is_integer(2) ||
            sqlite3_value_int64(row[0]) != static_cast<sqlite3_int64>(owner_) + 1) {
            return false;
        }
        const sqlite3_int64 item = sqlite3_value_int64(row[1]);
        if (item != item_ && !enter(item)) {
            return false;
        }
        if (sqlite3_value_int64(row[2]) != static_cast<sqlite3_int64>(first_.size()) + 1 || !add(row[3], first_) ||
            !add(row[4], second_)) {
            return false;
        }
        if (++rows_ % rows_between_reports == 0) {
            report();
        }
        return work_.sound;
    }

    /// After the last row.
    bool finish()
    {
        report();
        return leave() && (!table_.every_item || visited_ == table_.items[owner_]);
    }

private:
    bool enter(sqlite3_int64 item)
    {
        const bool is_one = item > item_ && item <= static_cast<sqlite3_int64>(table_.items[owner_]);
        const bool left = leave();
        item_ = item;
        ++visited_;
        return is_one && left;
    }

    bool leave()
    {
        const bool taken = item_ == 0 || table_.deliver(owner_, static_cast<std::size_t>(item_ - 1), first_, second_);
        first_.clear();
        second_.clear();
        return taken;
    }

    static bool add(sqlite3_value* column, std::vector<float>& reals)
    {
        const int type = sqlite3_value_type(column);
        if (type != SQLITE_FLOAT && type != SQLITE_INTEGER) {
            return false;
        }
        const double value = sqlite3_value_double(column);
        if (std::abs(value) > double{std::numeric_limits<float>::max()} && !std::isfinite(static_cast<float>(value))) {
            return false;
        }
        reals.push_back(static_cast<float>(value));
        return reals.back() != 0 || value == 0;
    }

    void report()
    {
        const std::uint64_t rows = work_.rows += std::exchange(rows_, 0);
        if (on_progress_) {
            on_progress_(rows);
        }
    }

    const ValueTable& table_;
    std::size_t owner_;
    Work& work_;
    const std::function<void(std::uint64_t)>& on_progress_;
    sqlite3_int64 item_ = 0;
    std::size_t visited_ = 0;
    std::vector<float> first_;
    std::vector<float> second_;
    std::uint64_t rows_ = 0;
};

/// SQLite's own loop calls this for each row, which costs half of a step to it.
void take_row(sqlite3_context* context, int /*count*/, sqlite3_value** row)
{
    auto& taker = **static_cast<RowTaker**>(sqlite3_user_data(context));
    try {
        if (!taker.take(row)) {
            sqlite3_result_error_code(context, SQLITE_CONSTRAINT);
        }
    } catch (const std::bad_alloc&) {
        sqlite3_result_error_nomem(context);
    }
}

std::string statement_of(const Part& part)
{
    const std::size_t number = part.owner + 1;
    std::string condition = "1";
    if (part.owner > 0) {
        condition += " AND " + part.table->owner + " >= " + std::to_string(number);
    }
    if (number < part.table->items.size()) {
        condition += " AND " + part.table->owner + " < " + std::to_string(number + 1);
    }
    return "SELECT take_row(" + part.table->columns + ") FROM " + part.table->name + " WHERE " + condition;
}

/// Reads parts as long as there are any and all rows are sound. Throws SqliteError, also for a row that is not.
void read_parts(const Database& database, Work& work, const std::function<void(std::uint64_t)>& on_progress)
{
    RowTaker* taker = nullptr;
    sqlite3_create_function_v2(
        database.handle(), "take_row", 5, SQLITE_UTF8, &taker, nullptr, take_row,
        [](sqlite3_context* context) { sqlite3_result_null(context); }, nullptr);
    for (std::size_t next = work.next++; next < work.parts.size() && work.sound; next = work.next++) {
        const Part& part = work.parts[next];
        RowTaker rows(part, work, on_progress);
        taker = &rows;
        Statement statement(database, statement_of(part));
        statement.step();
        if (!rows.finish()) {
            work.sound = false;
        }
    }
}

/// The same without throwing, for whichever thread. What SQLite finds wrong, a reading row by row will find again.
void read_soundly(const Database& database, Work& work, const std::function<void(std::uint64_t)>& on_progress,
                  std::exception_ptr& failure) noexcept
{
    try {
        read_parts(database, work, on_progress);
        return;
    } catch (const SqliteError& error) {
        failure = error.code == SQLITE_NOMEM ? std::make_exception_ptr(std::bad_alloc()) : nullptr;
    } catch (...) {
        failure = std::current_exception();
    }
    work.sound = false;
}

/// Names and columns of a table; whoever calls adds the rest.
ValueTable table_of(std::string_view name)
{
    TableShape shape = model_table(name);
    if (shape.keys == 2) {
        shape.columns.insert(shape.columns.begin() + 1, "1");
    }
    if (shape.columns.size() == 4) {
        shape.columns.emplace_back("0");
    }
    return {shape.name, shape.column_list(), shape.columns.front()};
}

/// How many items each owner has that own series or values, by the table of the items.
std::map<std::string_view, std::vector<std::size_t>> items_of_owners(const Model& model)
{
    std::map<std::string_view, std::vector<std::size_t>> all;
    for_each_item(model, [&](const auto& table, const RowNumbers& numbers, const auto& item) {
        if constexpr (
            requires { item.series; } || requires { item.values; }) {
            std::vector<std::size_t>& items = all[table.name];
            items.resize(static_cast<std::size_t>(numbers[0]));
            ++items.back();
        }
    });
    return all;
}

ValueTable series_table(const SeriesTable& table, Model& model)
{
    ValueTable values = table_of(table.name);
    values.deliver = [&](std::size_t owner, std::size_t item, Reals times, Reals reals) {
        const StepTo step{{static_cast<std::int64_t>(owner + 1), static_cast<std::int64_t>(item + 1)}};
        with_item(table.owner, model, step, [&](const auto& /*table*/, auto& of) {
            if constexpr (requires { of.series; }) {
                of.series.times.assign(times.begin(), times.end());
                of.series.values.assign(reals.begin(), reals.end());
            }
        });
        return times.size() <= table.most_pairs;
    };
    return values;
}

ValueTable initial_conditions_table(Model& model)
{
    ValueTable values = table_of("initial_condition");
    values.items.assign(model.systems.size(), 1);
    values.every_item = !model.segments.empty();
    values.deliver = [&model](std::size_t system, std::size_t /*item*/, Reals concentrations, Reals fractions) {
        std::vector<InitialCondition>& conditions = model.systems[system].initial_conditions;
        conditions.reserve(concentrations.size());
        for (std::size_t segment = 0; segment < concentrations.size(); ++segment) {
            conditions.push_back({concentrations[segment], fractions[segment]});
        }
        return conditions.size() == model.segments.size();
    };
    return values;
}

ValueTable parameters_table(Model& model)
{
    ValueTable values = table_of("parameter_value");
    values.every_item = !model.segments.empty();
    values.deliver = [&model](std::size_t type, std::size_t item, Reals reals, Reals /*none*/) {
        model.parameter_types[type].instances[item].values.assign(reals.begin(), reals.end());
        return reals.size() == model.segments.size();
    };
    return values;
}

std::vector<ValueTable> value_tables(Model& model)
{
    auto items = items_of_owners(model);
    std::vector<ValueTable> tables{initial_conditions_table(model), parameters_table(model)};
    tables.back().items = std::move(items["parameter"]);
    for (const SeriesTable& series : series_tables) {
        tables.push_back(series_table(series, model));
        tables.back().items = std::move(items[series.owner_name]);
    }
    return tables;
}

} // namespace

bool load_values(const Database& read, const Database* other, Model& model,
                 const std::function<void(std::uint64_t rows)>& on_progress)
{
    auto tables = value_tables(model);
    Work work;
    for (ValueTable& table : tables) {
        if (table.items.empty()) {
            table.items = {0}; // and no row is sound
        }
        for (std::size_t owner = 0; owner < table.items.size(); ++owner) {
            work.parts.push_back({&table, owner});
        }
    }
    std::exception_ptr failure;
    std::exception_ptr failure_aside;
    std::thread aside;
    if (other != nullptr) {
        aside = std::thread([&] { read_soundly(*other, work, nullptr, failure_aside); });
    }
    read_soundly(read, work, on_progress, failure);
    if (aside.joinable()) {
        aside.join();
    }
    if (on_progress) {
        on_progress(work.rows);
    }
    for (const std::exception_ptr& thrown : {failure, failure_aside}) {
        if (thrown) {
            std::rethrow_exception(thrown);
        }
    }
    return work.sound;
}

} // namespace velm
