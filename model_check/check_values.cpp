#include "model_check/check_values.hpp"

#include "model_check/rules.hpp"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <set>
#include <string_view>
#include <tuple>
#include <utility>

namespace velm {

namespace {

/// The rows, or the series, of which a value could not be read.
using Gaps = std::set<std::tuple<std::string_view, std::int64_t, std::int64_t>>;

std::tuple<std::string_view, std::int64_t, std::int64_t> row_of(const Address& address)
{
    return {address.table, address.numbers[0], address.numbers[1]};
}

bool leads_water(const Address& address)
{
    return address.table.starts_with("flow_") || address.column == "flow_option" || address.table == "boundary" ||
           (address.table == "exchange_pair" && address.column.ends_with("_segment"));
}

/// Why nothing can be said of the model's water; empty where something can.
std::string reason_without_water(const Model& model, const std::vector<Address>& gaps)
{
    if (flows_are_elsewhere(model)) {
        return "segment 1 has flow option 3, so the flows come from another file";
    }
    return std::ranges::any_of(gaps, leads_water) ? "where the water flows cannot all be read" : "";
}

} // namespace

std::vector<std::string> check_values(const Model& model, const std::vector<Address>& gaps,
                                      const std::function<void(Finding finding)>& report)
{
    const WaterBalance water(model);
    const RunDates dates(model);
    const MeantModel meant{model, water, dates};
    const std::string no_water = reason_without_water(model, gaps);
    Gaps rows_with_gaps; // a field without a value reads as 0, of which its row may seem to be out of meaning
    std::ranges::transform(gaps, std::inserter(rows_with_gaps, rows_with_gaps.end()), row_of);
    std::string left_out;
    for (const MeaningRule& meaning : meaning_rules()) {
        if (meaning.needs_flows && !no_water.empty()) {
            left_out += (left_out.empty() ? "" : ", ") + std::string(meaning.rule.code);
            continue;
        }
        meaning.look(meant, [&](const Address& address, std::string message, std::string remedy) {
            if (meaning.sees_gaps || !rows_with_gaps.contains(row_of(address))) {
                report({.rule = &meaning.rule,
                        .address = address,
                        .message = std::move(message),
                        .remedy = std::move(remedy)});
            }
        });
    }
    return left_out.empty() ? std::vector<std::string>() : std::vector{no_water + ": " + left_out + " are left out"};
}

} // namespace velm
