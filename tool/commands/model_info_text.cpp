#include "model/address.hpp"
#include "model/real_in_words.hpp"
#include "model/words.hpp"
#include "plain_text/plain_text.hpp"
#include "tool/commands/model_info.hpp"
#include "water_balance/connections.hpp"
#include "water_balance/series_facts.hpp"
#include "water_balance/series_list.hpp"
#include "water_balance/stays.hpp"

#include <algorithm>
#include <array>
#include <iomanip>
#include <map>
#include <string_view>
#include <vector>

namespace velm {
namespace {

/// The beginning of a line: what it is about, in a column of its own.
std::ostream& line(std::ostream& out, std::string_view subject)
{
    return out << std::left << std::setw(22) << subject << std::right;
}

/// Rows of cells under their captions, as wide as the widest needs; numbers stand at the right.
class TextTable {
public:
    explicit TextTable(std::vector<std::string> captions) { rows_.push_back(std::move(captions)); }

    void add(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }

    void print(std::ostream& out, std::size_t numbers_from, std::size_t numbers_to) const
    {
        std::vector<std::size_t> widths(rows_.front().size());
        for (const std::vector<std::string>& row : rows_) {
            for (std::size_t i = 0; i < row.size(); ++i) {
                widths[i] = std::max(widths[i], characters(row[i]));
            }
        }
        for (const std::vector<std::string>& row : rows_) {
            std::string text;
            for (std::size_t i = 0; i < row.size(); ++i) {
                const std::size_t lacking = widths[i] - characters(row[i]);
                const bool number = i >= numbers_from && i < numbers_to;
                text.append(i == 0 ? "" : "  ").append(number ? lacking : 0, ' ').append(row[i]);
                text.append(number || i + 1 == row.size() ? 0 : lacking, ' '); // the last may be very long
            }
            out << without_end_blanks(text) << '\n';
        }
    }

private:
    static std::size_t characters(const std::string& utf8)
    {
        return static_cast<std::size_t>(
            std::count_if(utf8.begin(), utf8.end(), [](char byte) { return (byte & '\xC0') != '\x80'; }));
    }

    std::vector<std::vector<std::string>> rows_;
};

void print_run(std::ostream& out, const ModelInfo& info)
{
    const Model& model = info.model();
    const auto triple = [](const std::array<std::int32_t, 3>& values) {
        return std::to_string(values[0]) + " " + std::to_string(values[1]) + " " + std::to_string(values[2]);
    };
    line(out, "model type") << model.model_type << '\n';
    line(out, "start") << "date " << triple(model.start_date) << ", time " << triple(model.start_time)
                       << (info.dates.known() ? " (" + info.dates.in_words(0) + ")" : "") << '\n';
    line(out, "end") << info.dates.in_words(model.julian_end_time) << '\n';
    line(out, "time steps") << "from " << real_in_words(model.minimum_time_step) << " to "
                            << real_in_words(model.maximum_time_step) << " days, output every "
                            << real_in_words(model.print_interval) << '\n';
}

void print_segment_counts(std::ostream& out, const Model& model)
{
    std::map<std::int32_t, std::size_t> types;
    for (const Segment& segment : model.segments) {
        ++types[segment.type];
    }
    line(out, "segments") << model.segments.size();
    for (const auto& [type, number] : types) {
        out << ", of type " << type << ": " << number;
    }
    out << '\n';
}

void print_systems(std::ostream& out, const Model& model)
{
    line(out, "systems") << model.systems.size() << '\n';
    for (std::size_t s = 0; s < model.systems.size(); ++s) {
        const System& system = model.systems[s];
        out << std::setw(5) << s + 1 << "  " << printable_latin1(system.name) << " (" << printable_latin1(system.tag)
            << "), boundaries: " << system.boundaries.items.size() << ", loads: " << system.loads.items.size() << '\n';
    }
}

template <class Fields, class PartsOf>
void print_fields(std::ostream& out, std::string_view subject, std::string_view parts, const Fields& fields,
                  PartsOf parts_of)
{
    line(out, subject) << fields.size() << '\n';
    for (std::size_t f = 0; f < fields.size(); ++f) {
        std::size_t pairs = 0;
        std::size_t sum = 0;
        for (const auto& function : fields[f].functions) {
            pairs += function.series.times.size();
            sum += parts_of(function).size();
        }
        out << std::setw(5) << f + 1 << "  functions: " << fields[f].functions.size() << ", " << parts << ": " << sum
            << ", time pairs: " << pairs << '\n';
    }
}

template <class Instance>
void print_instances(std::ostream& out, std::string_view subject, const std::vector<InstanceType<Instance>>& types)
{
    std::size_t used = 0;
    std::size_t unused = 0;
    for (const auto& type : types) {
        for (const Instance& instance : type.instances) {
            ++(instance.used ? used : unused);
        }
    }
    line(out, subject) << "types: " << types.size() << ", used: " << used << ", unused: " << unused << '\n';
}

/// Number and time range of each class of series.
void print_series_counts(std::ostream& out, const std::vector<SeriesItem>& all)
{
    for (const auto& [table, subject] : {std::pair{"flow_value", "flow series"},
                                         {"exchange_value", "dispersion series"},
                                         {"boundary_value", "boundary series"},
                                         {"load_value", "load series"},
                                         {"time_function_value", "time-function series"}}) {
        std::size_t series = 0;
        std::vector<float> ends;
        std::size_t pairs = 0;
        for (const SeriesItem& item : all) {
            if (item.table == table) {
                const std::vector<float>& times = item.series->times;
                ++series;
                pairs += times.size();
                if (!times.empty()) {
                    const auto [first, last] = std::ranges::minmax(times);
                    ends.insert(ends.end(), {first, last});
                }
            }
        }
        line(out, subject) << "series: " << series << ", time pairs: " << pairs;
        if (!ends.empty()) {
            const auto [first, last] = std::ranges::minmax(ends);
            out << ", from " << first << " to " << last;
        }
        out << '\n';
    }
}

void print_water(std::ostream& out, const ModelInfo& info)
{
    line(out, "water over the run");
    if (info.elsewhere) {
        out << "from the hydrodynamic file " << printable_latin1(info.model().hydrodynamic_file) << '\n';
        return;
    }
    const WaterTotals& totals = info.water.totals();
    out << "in " << in_figures(totals.in) << " m3, out " << in_figures(totals.out) << " m3, stored "
        << in_figures(totals.stored) << " m3\n";
}

void print_series(std::ostream& out, const ModelInfo& info, const std::vector<SeriesItem>& all)
{
    TextTable table({"", "pairs", "first day", "last day", "step", "gaps", "least", "mean", "greatest", "unit", ""});
    for (const SeriesItem& item : all) {
        const SeriesFacts facts = facts_of(*item.series, item.factor);
        std::string name = row_in_words({item.table, "", {item.owner, item.number}});
        name += item.segment == 0 ? "" : ", segment " + std::to_string(item.segment);
        name += item.used ? "" : ", unused";
        if (facts.pairs == 0) {
            table.add({name, "0", "", "", "", "", "", "", "", "", printable_latin1(item.description)});
            continue;
        }
        table.add({name, std::to_string(facts.pairs), info.dates.in_words(facts.first_day),
                   info.dates.in_words(facts.last_day), in_figures(facts.usual_step), std::to_string(facts.gaps),
                   in_figures(facts.least), in_figures(facts.mean), in_figures(facts.greatest), std::string(item.unit),
                   printable_latin1(item.description)});
    }
    out << '\n';
    table.print(out, 1, 9);
}

std::string in_words(const std::vector<Connection>& connections)
{
    std::string words;
    for (const Connection& one : connections) {
        words += words.empty() ? "" : ", ";
        words += one.segment == 0 ? "outside" : std::to_string(one.segment);
        words += (one.exchange ? " (exchange " : " (flow ") + std::to_string(one.field) + ")";
    }
    return words;
}

void print_segments(std::ostream& out, const ModelInfo& info)
{
    const auto connections = connections_of(info.model());
    const std::vector<Stay> stay = stays(info.water);
    TextTable table({"segment", "volume m3", "in m3/s", "out m3/s", "stay days", "shortest", "type", "name",
                     "connected to (by field)"});
    for (std::size_t i = 0; i < info.model().segments.size(); ++i) {
        const Segment& segment = info.model().segments[i];
        const auto number = static_cast<std::int32_t>(i + 1);
        const MeanFlow mean = info.water.mean_flow(number);
        const auto known = [&](double value) { return info.elsewhere ? "" : in_figures(value); };
        table.add({std::to_string(number), in_figures(info.water.start_volume(number)), known(mean.in), known(mean.out),
                   known(stay[i].mean), known(stay[i].shortest), std::to_string(segment.type),
                   printable_latin1(segment.name), in_words(connections[i])});
    }
    out << '\n';
    table.print(out, 0, 7);
}

} // namespace

void print_info(std::ostream& out, const ModelInfo& info, const InfoTables& tables)
{
    const Model& model = info.model();
    const std::vector<SeriesItem> series = all_series(model);
    line(out, info.database ? "model" : "input file") << printable(info.file) << '\n';
    print_run(out, info);
    print_segment_counts(out, model);
    print_systems(out, model);
    print_fields(
        out, "flow fields", "paths", model.flow_fields,
        [](const FlowFunction& function) -> auto& { return function.paths; });
    print_fields(
        out, "exchange fields", "segment pairs", model.exchange_fields,
        [](const ExchangeFunction& function) -> auto& { return function.pairs; });
    print_series_counts(out, series);
    print_instances(out, "time functions", model.time_function_types);
    print_instances(out, "parameters", model.parameter_types);
    print_instances(out, "constants", model.constant_types);
    print_water(out, info);
    if (tables.series) {
        print_series(out, info, series);
    }
    if (tables.segments) {
        print_segments(out, info);
    }
}

} // namespace velm
