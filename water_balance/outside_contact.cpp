#include "water_balance/water_balance.hpp"

#include <algorithm>

namespace velm {

namespace {

/// The segment at the end of a path or a pair that leads outside, 0 for another.
template <class Ends>
std::size_t segment_at_outside(const Ends& ends, std::size_t segments)
{
    const std::int32_t one = std::min(ends.first_segment, ends.second_segment);
    const std::int32_t other = std::max(ends.first_segment, ends.second_segment);
    return one == 0 && static_cast<std::size_t>(other) <= segments ? static_cast<std::size_t>(other) : 0;
}

/// Looks at the series' pairs during the run, or at what it keeps where none is within.
bool is_zero_all_the_time(const TimeSeries& series, double factor, double end)
{
    const FlowCourse course(series, factor, end);
    return course.least() == 0 && course.greatest() == 0;
}

} // namespace

void WaterBalance::add_contacts()
{
    for (const FlowField& field : model_.flow_fields) {
        for (const FlowFunction& function : field.functions) {
            for (const FlowPath& path : function.paths) {
                if (const std::size_t segment = segment_at_outside(path, model_.segments.size()); segment != 0) {
                    outside_[segment - 1].any = true;
                }
            }
        }
    }
    for (const WaterFunction& function : functions_) {
        add_water_entries(function);
    }
    std::int32_t number = 0;
    for (const ExchangeField& field : model_.exchange_fields) {
        add_exchanges(field, ++number);
    }
}

/// Evaporation and precipitation bring nothing that a boundary could give a concentration.
void WaterBalance::add_water_entries(const WaterFunction& function)
{
    const FlowField& field = model_.flow_fields[static_cast<std::size_t>(function.field - 1)];
    std::int32_t number = 0;
    for (const FlowPath& path : field.functions[static_cast<std::size_t>(function.number - 1)].paths) {
        ++number;
        const std::size_t segment = segment_at_outside(path, model_.segments.size());
        const bool leads_in = (path.first_segment == 0) == (path.fraction > 0);
        const bool enters = leads_in ? function.course.greatest() > 0 : function.course.least() < 0;
        if (segment != 0 && path.fraction != 0 && enters && function.field <= 2 &&
            !outside_[segment - 1].water_enters()) {
            outside_[segment - 1].entry = {function.field, function.number, number};
        }
    }
}

void WaterBalance::add_exchanges(const ExchangeField& field, std::int32_t number)
{
    const double factor = double{field.scale_factor} * double{field.conversion_factor};
    std::int32_t function_number = 0;
    for (const ExchangeFunction& function : field.functions) {
        ++function_number;
        const bool mixes = !is_zero_all_the_time(function.series, factor, end_);
        std::int32_t pair_number = 0;
        for (const ExchangePair& pair : function.pairs) {
            ++pair_number;
            const std::size_t segment = segment_at_outside(pair, model_.segments.size());
            if (segment == 0) {
                continue;
            }
            OutsideContact& contact = outside_[segment - 1];
            contact.any = true;
            if (mixes && number <= 2 && !contact.mixes()) {
                contact.mixing = {number, function_number, pair_number};
            }
        }
    }
}

} // namespace velm
