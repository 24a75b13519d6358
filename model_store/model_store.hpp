#pragma once

#include "model/finding.hpp"
#include "model/model.hpp"
#include "whole_file/place.hpp"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace velm {

/// The SQL that creates an empty model database, with units and meaning of each column as comments.
[[nodiscard]] std::string_view model_schema();

/// "SQLite 3.40.1, model schema 1"
[[nodiscard]] std::string store_versions();

/// What a model database can hold that no model does.
inline constexpr FindingRule database_row{"V401", "database row", Level::error, "correct the row"};

/// A finding of that rule, without a table when it is about the file as a whole. The message quotes the value where
/// there is one.
[[nodiscard]] Finding database_finding(const Address& address, std::string value, const std::string& message,
                                       std::string remedy);

/// A model database that cannot be read or written. what() joins all problems, a line each.
class StoreError : public std::runtime_error {
public:
    StoreError(std::vector<Finding> found, bool more_than_listed);
    std::vector<Finding> problems;
    bool more; ///< true when the limit cut the list
};

/// SQL statements, and how a message calls the file that has them.
struct SqlScript {
    std::string text; ///< without NUL
    std::string name; ///< may be empty
};

/// Hears of each statement that was run: its line in the script, counted from 1, and how many rows it changed.
using OnChange = std::function<void(std::size_t line, std::int64_t rows)>;

struct LoadOptions {
    bool quick_check = false;                            ///< also let SQLite verify the file's structure
    std::size_t most_problems = 100;                     ///< how many to collect before giving up
    std::function<void(std::uint64_t rows)> on_progress; ///< called now and then with the rows read so far
    SqlScript changes;  ///< what a private copy is changed by before that is read; see changed_copy.hpp
    OnChange on_change; ///< called for each statement of the changes
};

/// Reads a whole model into memory. The file is opened read-only and without trust and is never changed.
/// Throws StoreError with all problems found.
[[nodiscard]] Model load_model(const std::filesystem::path& database, const LoadOptions& options = {});

/// Where a segment is drawn, in a plane of any unit and origin.
struct SegmentPlace {
    std::int32_t segment = 0;
    double x = 0;
    double y = 0;

    bool operator==(const SegmentPlace&) const = default;
};

/// The places of segments, by segment; of a model that has none, or whose file is older than places, none. Throws
/// StoreError as load_model() does, for the table of places and for a file that is no model database.
[[nodiscard]] std::vector<SegmentPlace> load_segment_places(const std::filesystem::path& database);

struct SaveOptions {
    /// These values become NULL, whatever the model has in their place. Such a database has the schema's tables without
    /// NOT NULL, and a load refuses it, naming each NULL, until all are filled.
    std::span<const Address> missing{};
    Standing standing = Standing::refused;                 ///< what may stand at the database's name
    std::function<void(std::uint64_t rows)> on_progress{}; ///< called now and then with the rows written so far
};

/// Writes `model` into a new database file. Throws FileError when the file exists (and is not to be replaced), when no
/// file can be made there, when a journal lies there that SQLite would play back into it, and when another program uses
/// the database that is to be replaced; StoreError when it cannot be written or the model has what the schema refuses.
/// Then no new file is left, and what stood there is untouched.
void save_model(const Model& model, const std::filesystem::path& database, const SaveOptions& options = {});

/// Creates a database file from SQL text: the schema alone, or the schema and statements that fill it.
/// Throws StoreError when the SQL fails, and FileError as save_model() does; then no file is left.
void create_database(std::string_view sql, const std::filesystem::path& database);

} // namespace velm
