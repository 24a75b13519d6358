#include "report/parts.hpp"
#include "water_balance/stays.hpp"
#include "water_balance/volumes.hpp"

#include <limits>

namespace velm {
namespace {

void put_totals(PageData& data, const WaterTotals& totals)
{
    data.begin_object("totals");
    data.put("in", totals.in);
    data.put("out", totals.out);
    data.put("stored", totals.stored);
    data.end_object();
}

void put_functions(PageData& data, const WaterBalance& balance)
{
    data.put_objects("functions", balance.functions(), [&](const WaterFunction& function) {
        data.put_count("field", function.field);
        data.put_count("function", function.number);
        data.put("mean", function.course.mean_forward() - function.course.mean_backward());
        data.put("greatest", function.course.greatest());
        data.put("greatest_day", function.course.greatest_day());
        data.put("in", function.from_outside);
        data.put("out", function.to_outside);
    });
}

void put_segments_water(PageData& data, const WaterBalance& balance)
{
    const std::size_t segments = balance.model().segments.size();
    const std::vector<Stay> stay = stays(balance);
    const std::vector<VolumeRange> volumes = volume_ranges(balance);
    const auto number = [](std::size_t i) { return static_cast<std::int32_t>(i + 1); };
    data.begin_object("segments");
    data.put_numbers("in", segments, [&](auto i) { return balance.mean_flow(number(i)).in; });
    data.put_numbers("out", segments, [&](auto i) { return balance.mean_flow(number(i)).out; });
    data.put_numbers("stay", segments, [&](auto i) { return stay[i].mean; });
    data.put_numbers("shortest", segments, [&](auto i) { return stay[i].shortest; });
    data.put_numbers("shortest_day", segments, [&](auto i) { return stay[i].shortest_day; });
    data.put_numbers("start", segments, [&](auto i) { return volumes[i].start; });
    data.put_numbers("end", segments, [&](auto i) { return volumes[i].end; });
    data.put_numbers("least", segments, [&](auto i) { return volumes[i].least; });
    data.put_numbers("least_day", segments, [&](auto i) { return volumes[i].least_day; });
    data.put_numbers("greatest", segments, [&](auto i) { return volumes[i].greatest; });
    data.put_numbers("greatest_day", segments, [&](auto i) { return volumes[i].greatest_day; });
    data.put_numbers("dry_day", segments,
                     [&](auto i) { return volumes[i].dry_day.value_or(std::numeric_limits<double>::quiet_NaN()); });
    data.end_object();
}

/// Each segment's functions lie between its number in `first` and the next.
void put_shares(PageData& data, const WaterBalance& balance)
{
    std::vector<float> first{0};
    std::vector<WaterShare> all;
    for (std::size_t i = 0; i < balance.model().segments.size(); ++i) {
        const auto shares = balance.shares(static_cast<std::int32_t>(i + 1));
        all.insert(all.end(), shares.begin(), shares.end());
        first.push_back(static_cast<float>(all.size()));
    }
    data.begin_object("shares");
    data.put_count("count", all.size());
    data.put_numbers("first", first);
    data.put_numbers("function", all.size(), [&](auto i) { return all[i].function; });
    data.put_numbers("in", all.size(), [&](auto i) { return all[i].mean_in; });
    data.put_numbers("out", all.size(), [&](auto i) { return all[i].mean_out; });
    data.end_object();
}

} // namespace

void put_balance(PageData& data, const Model& model, const WaterBalance* balance)
{
    if (balance == nullptr) {
        data.put("balance_missing",
                 "The flows come from the hydrodynamic file: a balance of those in the model says nothing.");
        return;
    }
    data.begin_object("balance");
    put_totals(data, balance->totals());
    put_functions(data, *balance);
    if (!model.segments.empty()) {
        put_segments_water(data, *balance);
    }
    put_shares(data, *balance);
    data.put("step", double{model.maximum_time_step});
    data.end_object();
}

} // namespace velm
