#pragma once

#include "model_store/numbered_rows.hpp"
#include "model_store/paged_file.hpp"
#include "model_store/row_tree.hpp"
#include "model_store/sqlite_database.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <future>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velm {

/// Fills empty tables of a database that nobody has open; series while others are still being read, if they are added.
///
/// All procedures throw SqliteError, or std::system_error when the file cannot be written; it is of no use then.
class RowWriter {
public:
    explicit RowWriter(const std::filesystem::path& database);

    /// Copies the series and writes it in the background. In each table, keys rise.
    void add(std::string_view table, const std::array<std::uint64_t, 2>& key, const TimeSeries& series);
    /// Fills the tables to which nothing was added; the others are these already. Closes the file.
    void finish(std::span<const NumberedTable> tables);

private:
    /// Rows that are to be written, and what they hold.
    struct Batch {
        struct Run {
            RowTree* tree = nullptr;
            NumberedRows rows; ///< but for the columns
        };
        std::vector<Run> runs;
        std::vector<float> numbers; ///< of each run its times, then its values
    };

    RowWriter(const std::filesystem::path& file, const Database& schema);

    void hand_over();
    static void write(const Batch& batch);

    std::filesystem::path database_;
    PagedFile file_;
    std::map<std::string, RowTree, std::less<>> trees_;
    Batch gathered_;
    Batch in_work_;
    std::future<void> writing_; ///< the last member, for its end waits until in_work_ is written
};

} // namespace velm
