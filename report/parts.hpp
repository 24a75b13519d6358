#pragma once

#include "model_diff/model_diff.hpp"
#include "report/page_data.hpp"
#include "report/report.hpp"
#include "water_balance/water_balance.hpp"

#include <span>
#include <string>
#include <string_view>

namespace velm {

// The parts of the page's data, each a member or some members of the object that is open.

void put_head(PageData& data, const Report& report);
/// `balance` is null when the flows are elsewhere.
void put_segments(PageData& data, const Report& report, const WaterBalance* balance);
void put_paths(PageData& data, const Model& model, const WaterBalance* balance);
/// `found` is what differs from the other model, if there is one.
void put_series(PageData& data, const Report& report, const WaterBalance* balance, std::span<const Difference> found);
void put_balance(PageData& data, const Model& model, const WaterBalance* balance);
void put_tables(PageData& data, const Model& model);
void put_findings(PageData& data, const Model& model, const FileFindings& findings);
void put_against(PageData& data, const Report& report, std::span<const Difference> found);

/// The table with the pairs of an item's series.
[[nodiscard]] std::string_view table_of_values(std::string_view item_table);

/// "surface water", "exchange field 3"
[[nodiscard]] std::string flow_field_name(std::size_t number);
[[nodiscard]] std::string exchange_field_name(std::size_t number);

} // namespace velm
