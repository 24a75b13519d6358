#pragma once

#include "model/model.hpp"
#include "model_store/load/table_reader.hpp"

#include <cstdint>
#include <functional>
#include <string_view>

namespace velm {

/// Fills the model from all tables, in an order in which each comes after those that its rows refer to.
void load_tables(LoadState& load, Model& model);

/// What a time series table's row belongs to. Called on a series' first row, while the load is sound.
using FindSeries = std::function<TimeSeries&(const TableReader& row)>;

constexpr std::int64_t any_number_of_pairs = INT64_MAX;

/// Reads a table of time pairs into the series that its rows belong to.
void load_series(LoadState& load, std::string_view table, const ParentKeys& parents, const FindSeries& find,
                 std::int64_t most_pairs = any_number_of_pairs);

/// Reads a table that has a row for each segment under each of its parents, and reports the rows that it lacks.
void load_for_each_segment(LoadState& load, std::string_view table, const ParentKeys& parents,
                           const std::function<void(TableReader& row)>& read);

} // namespace velm
