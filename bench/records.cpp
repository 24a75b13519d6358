// Whole records: through a channel whose file drops them, against one call or statement a record.
#include "bench/peers.h"
#include "bench/rendering.hpp"
#include "bench/segment_arrays.hpp"
#include "bench/workloads.hpp"
#include "record_output/write_record.hpp"

#include <cmath>
#include <cstdio>
#include <memory>

namespace velm::bench {
namespace {

constexpr std::size_t record_count = 4096;
constexpr auto count = static_cast<std::int32_t>(record_count);

class DroppedFile final : public OutputFile {
public:
    void open(const char* /*path*/) override {}
    void write(const char* bytes, std::size_t /*size*/) override { benchmark::DoNotOptimize(bytes); }
    void close() override {}
};

/// All records by `write(channel, number)`; the channel goes on from one run to the next.
template <class Write>
RenderAll through_a_channel(Write write)
{
    const auto file = std::make_shared<DroppedFile>();
    const auto channel = std::make_shared<OutputChannel>(*file);
    return [=](char* /*text*/) {
        static_cast<void>(file); // kept as long as its channel
        for (std::size_t i = 0; i < record_count; ++i) {
            write(*channel, i);
        }
    };
}

/// All records by `print(line, room, number)`, one behind the other.
template <class Print>
RenderAll line_by_line(Print print)
{
    return [=](char* text) {
        for (std::size_t i = 0; i < record_count; ++i) {
            text += print(text, i);
        }
    };
}

void add(const std::string& what, std::size_t width, RenderAll velm, RenderAll printed, RenderAll fortran)
{
    const std::size_t room = record_count * (width + 4);
    add_measurement(what, "model", "velm", record_count, room, std::move(velm));
    add_measurement(what, "model", "snprintf", record_count, room, std::move(printed));
    add_measurement(what, "model", "Fortran", record_count, room, std::move(fortran));
}

void add_rows(const std::shared_ptr<const SegmentArrays>& c)
{
    constexpr std::size_t room = 272;
    add("segment row", 260, through_a_channel([c](OutputChannel& out, std::size_t row) {
            const std::int32_t* i = &c->integers[4 * row];
            const float* r = &c->reals[columns_of_a_row * row];
            write_record<"(4(I5),16(F15.5))">(out, i[0], i[1], i[2], i[3], r[0], r[1], r[2], r[3], r[4], r[5], r[6],
                                              r[7], r[8], r[9], r[10], r[11], r[12], r[13], r[14], r[15]);
        }),
        line_by_line([c](char* line, std::size_t row) {
            const std::int32_t* i = &c->integers[4 * row];
            const float* r = &c->reals[columns_of_a_row * row];
            const auto real = [r](std::size_t column) { return double{r[column]}; };
            return std::snprintf(line, room,
                                 "%5d%5d%5d%5d%15.5f%15.5f%15.5f%15.5f%15.5f%15.5f%15.5f%15.5f%15.5f%15.5f%15.5f"
                                 "%15.5f%15.5f%15.5f%15.5f%15.5f\r\n",
                                 i[0], i[1], i[2], i[3], real(0), real(1), real(2), real(3), real(4), real(5), real(6),
                                 real(7), real(8), real(9), real(10), real(11), real(12), real(13), real(14), real(15));
        }),
        [c](char* lines) { fortran_row_records(c->integers.data(), c->reals.data(), count, lines); });
}

void add_counts(const std::shared_ptr<const SegmentArrays>& c)
{
    add("labelled count", 40, through_a_channel([c](OutputChannel& out, std::size_t i) {
            write_record<"(I5,15x,'Number of Time Pairs')">(out, c->integers[i]);
        }),
        line_by_line([c](char* line, std::size_t i) {
            return std::snprintf(line, 64, "%5d               Number of Time Pairs\r\n", c->integers[i]);
        }),
        [c](char* lines) { fortran_count_records(c->integers.data(), count, lines); });
}

void add_pairs(const std::shared_ptr<const TimeSeries>& s)
{
    add("pair", 25, through_a_channel([s](OutputChannel& out, std::size_t i) {
            write_record<"(F10.4,5x,F10.4)">(out, s->times[i], s->values[i]);
        }),
        line_by_line([s](char* line, std::size_t i) {
            return std::snprintf(line, 64, "%10.4f     %10.4f\r\n", double{s->times[i]}, double{s->values[i]});
        }),
        [s](char* lines) { fortran_pair_records(s->times.data(), s->values.data(), count, lines); });
}

void add_free_pairs(const std::shared_ptr<const TimeSeries>& s)
{
    add("free-form pair", 32, through_a_channel([s](OutputChannel& out, std::size_t i) {
            write_free_record(out, s->times[i], s->values[i]);
        }),
        line_by_line([s](char* line, std::size_t i) {
            const auto has_point = [](float v) { return v == 0 || (std::abs(v) >= 0.1F && std::abs(v) < 999'999.F); };
            const char* const formats[2][2] = {{"  %.6E  %.6E\r\n", "  %.6E  %#.6g\r\n"},
                                               {"  %#.6g  %.6E\r\n", "  %#.6g  %#.6g\r\n"}};
            const char* const format = formats[has_point(s->times[i])][has_point(s->values[i])];
            return std::snprintf(line, 64, format, double{s->times[i]}, double{s->values[i]});
        }),
        [s](char* lines) { fortran_free_pair_records(s->times.data(), s->values.data(), count, lines); });
}

} // namespace

void add_records()
{
    const auto segments = std::make_shared<SegmentArrays>(segment_model());
    add_rows(segments);
    add_counts(segments);
    const Model model = boundary_model(record_count);
    const System& system = model.systems.front();
    add_pairs(std::make_shared<TimeSeries>(system.loads.items.front().series));
    add_free_pairs(std::make_shared<TimeSeries>(system.boundaries.items.front().series));
}

} // namespace velm::bench
