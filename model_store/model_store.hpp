#pragma once

#include "model/model.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace velm {

/// The SQL that creates an empty model database, with units and meaning of each column as comments.
[[nodiscard]] std::string_view model_schema();

/// One thing wrong with a model database, placed as exactly as it can be.
struct StoreProblem {
    std::string table;   ///< empty when the file as a whole is meant
    std::string row;     ///< the row's key in words, such as "system 3, boundary 2, pair 17"; may be empty
    std::string column;  ///< may be empty
    std::string value;   ///< the offending value as text; may be empty
    std::string message; ///< what is wrong
    std::string remedy;  ///< what to do about it

    /// "table boundary_value, system 3, boundary 2, pair 17, column time: 'abc' is not a number; store a number"
    [[nodiscard]] std::string text() const;
};

/// A model database that cannot be read or written. what() joins all problems, a line each.
class StoreError : public std::runtime_error {
public:
    StoreError(std::vector<StoreProblem> found, bool more_than_listed);
    std::vector<StoreProblem> problems;
    bool more; ///< true when the limit cut the list
};

struct LoadOptions {
    bool quick_check = false;                            ///< also let SQLite verify the file's structure
    std::size_t most_problems = 100;                     ///< how many to collect before giving up
    std::function<void(std::uint64_t rows)> on_progress; ///< called now and then with the rows read so far
};

/// Reads a whole model into memory. The file is opened read-only and without trust and is never changed.
/// Throws StoreError with all problems found.
[[nodiscard]] Model load_model(const std::filesystem::path& database, const LoadOptions& options = {});

/// A value that is not known, by its place in the database: the row's key in the table's key order, 0 where it is
/// shorter.
struct MissingValue {
    std::string_view table;
    std::string_view column;
    std::array<std::int32_t, 3> key{};
};

/// Where a database is written until it is whole: a file beside the one that it becomes. Whoever wants that file
/// removed when the process is ended from outside gives procedures of his own.
struct TemporaryFiles {
    /// A new name for a file that becomes `database`; there may be an empty file.
    std::function<std::filesystem::path(const std::filesystem::path& database)> create;
    /// Removes the file; called when the database has its own name, or has failed. Must not throw.
    std::function<void(const std::filesystem::path& temporary)> discard;
    /// Gives the file, when it is whole, the name of `database`, in the place of what stands there. Without it the file
    /// gets its name only when none has it.
    std::function<void(const std::filesystem::path& temporary, const std::filesystem::path& database)> replace{};

    /// Removes them unless the process is ended, and replaces nothing.
    static TemporaryFiles plain();
};

/// Writes `model` into a new database file. Throws StoreError when the file exists (and is not to be replaced) or
/// cannot be written, or when the model has what the schema refuses; then no new file is left.
///
/// `missing` values become NULL, whatever the model has in their place. Such a database has the schema's tables
/// without NOT NULL, and a load refuses it, naming each NULL, until all are filled.
void save_model(const Model& model, const std::filesystem::path& database, std::span<const MissingValue> missing = {},
                const TemporaryFiles& temporary_files = TemporaryFiles::plain());

/// A new model database whose time series can be written while the model is still being read. Without finish(), or when
/// that throws, no new file is left. All procedures throw StoreError as save_model() does.
class NewModel {
public:
    NewModel(const std::filesystem::path& database, const TemporaryFiles& temporary_files,
             std::span<const MissingValue> missing = {});
    ~NewModel();
    NewModel(const NewModel&) = delete;
    NewModel& operator=(const NewModel&) = delete;
    NewModel(NewModel&&) = delete;
    NewModel& operator=(NewModel&&) = delete;

    /// Writes, in the background, a series of the model to come. Of a table's series, all are given in the order of
    /// their keys, or none.
    void add_series(std::string_view table, const std::array<std::int32_t, 2>& key, const TimeSeries& series);
    /// Writes all else and gives the database its name.
    void finish(const Model& model);

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

/// Creates a database file from SQL text: the schema alone, or the schema and statements that fill it.
/// Throws StoreError when the file exists or the SQL fails; then no file is left.
void create_database(std::string_view sql, const std::filesystem::path& database);

} // namespace velm
