#include "bench/bench_host.hpp"

#include "headless_host/request.hpp"
#include "host_link/host_keys.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string>

namespace velm::bench {
namespace {

const Model* served = nullptr; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables): as any host library
std::string file_name;         // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

/// A perfect hash that reads twelve bytes of a key: its first four, its middle and its last four, the NUL among
/// them. Cheaper than one that reads them all, and enough for keys that are known to be sound.
struct KeyHash {
    static constexpr unsigned bits = 11;
    std::uint64_t seed = 1;
    std::array<std::uint8_t, std::size_t{1} << bits> positions{};

    static constexpr std::uint64_t word(const char* bytes)
    {
        std::uint32_t word = 0;
        for (unsigned i = 0; i < 4; ++i) {
            word |= std::uint32_t{static_cast<unsigned char>(bytes[i])} << (8 * i);
        }
        return word;
    }
    [[nodiscard]] constexpr std::size_t slot(const char* key, std::int32_t length) const
    {
        const std::uint64_t ends = word(key) | word(key + length - 4) << 32;
        return ((ends ^ word(key + length / 2 - 2) << 13) * seed) >> (64 - bits);
    }
    constexpr bool place_all_keys()
    {
        positions.fill(0xff);
        for (std::size_t i = 0; i < host_key_count; ++i) {
            std::uint8_t& position = positions[slot(host_keys[i].name.data(), host_keys[i].length())];
            if (position != 0xff) {
                return false;
            }
            position = static_cast<std::uint8_t>(i);
        }
        return true;
    }
};

constexpr KeyHash key_hash = [] {
    KeyHash hash;
    do {
        hash.seed = hash.seed * 6364136223846793005U + 1442695040888963407U; // odd multipliers that look like noise
    } while (!hash.place_all_keys());
    return hash;
}();

std::int32_t position_of(const char* key, std::int32_t length)
{
    return key_hash.positions[key_hash.slot(key, length)];
}

/// The item whose number stands at `number`.
template <class Item>
const Item& at(const std::vector<Item>& items, const void* number)
{
    return items[static_cast<std::size_t>(*static_cast<const std::int32_t*>(number)) - 1];
}

template <class Value>
void put(void* to, Value value)
{
    std::memcpy(to, &value, sizeof value);
}

template <class Items>
void put_count(void* to, const Items& items)
{
    put(to, static_cast<std::int32_t>(items.size()));
}

void put_text(void* to, std::size_t room, const std::string& text)
{
    std::memset(std::copy(text.begin(), text.end(), static_cast<char*>(to)), ' ', room - text.size());
}

void put_series(void* times, void* values, const TimeSeries& series)
{
    std::memcpy(times, series.times.data(), series.times.size() * sizeof(float));
    std::memcpy(values, series.values.data(), series.values.size() * sizeof(float));
}

void answer_1(std::int32_t key, void* value)
{
    switch (key) {
    case "GFILENAME"_key: return put_text(value, 512, file_name);
    case "GNUMSYS"_key: return put_count(value, served->systems);
    case "GNUMSEG"_key: return put_count(value, served->segments);
    case "GNFIELD"_key: return put_count(value, served->flow_fields);
    case "GNUMPARAMTYPE"_key: return put_count(value, served->parameter_types);
    default: return; // panel fragments, and what the workloads do not have
    }
}

void answer_2(std::int32_t key, void* number, void* value)
{
    const Model& model = *served;
    switch (key) {
    case "GSEGNAME"_key: return put_text(value, 40, at(model.segments, number).name);
    case "GBOTSEG"_key: return put(value, at(model.segments, number).bottom_segment);
    case "GSEGTYPE"_key: return put(value, at(model.segments, number).type);
    case "GIQOPT"_key: return put(number, at(model.segments, value).flow_option); // value first, segment behind it
    case "GVOLUME"_key: return put(value, at(model.segments, number).volume);
    case "GVMULT"_key: return put(value, at(model.segments, number).velocity_multiplier);
    case "GVEXP"_key: return put(value, at(model.segments, number).velocity_exponent);
    case "GDMULT"_key: return put(value, at(model.segments, number).depth_multiplier);
    case "GDEXP"_key: return put(value, at(model.segments, number).depth_exponent);
    case "GSEGSLOPE"_key: return put(value, at(model.segments, number).slope);
    case "GSEGLENGTH"_key: return put(value, at(model.segments, number).length);
    case "GSEGWIDTH"_key: return put(value, at(model.segments, number).width);
    case "GSEGROUGH"_key: return put(value, at(model.segments, number).roughness);
    case "GSEGMINDEPTH"_key: return put(value, at(model.segments, number).minimum_depth);
    case "GINITIALSURFACEELEVATION"_key: return put(value, at(model.segments, number).initial_surface_elevation);
    case "GBOTTOMELEVATION"_key: return put(value, at(model.segments, number).bottom_elevation);
    case "GSIDESLOPE"_key: return put(value, at(model.segments, number).side_slope);
    case "GINITIALDEPTH"_key: return put(value, at(model.segments, number).initial_depth);
    case "GWEIRHEIGHT"_key: return put(value, at(model.segments, number).weir_height);
    case "GWEIRTYPE"_key: return put(value, at(model.segments, number).weir_type);
    case "GNINQ"_key: return put_count(value, at(model.flow_fields, number).functions);
    case "GNOBC"_key: return put_count(value, at(model.systems, number).boundaries.items);
    case "GNOWK"_key: return put_count(value, at(model.systems, number).loads.items);
    case "GPARAMISC"_key: return put(value, at(model.parameter_types, number).isc);
    case "GNUMPARAMBYISC"_key: return put_count(value, at(model.parameter_types, number).instances);
    default: return;
    }
}

void answer_3(std::int32_t key, void* first, void* second, void* value)
{
    const Model& model = *served;
    switch (key) {
    case "GSYSNAME"_key: return put_text(second, 30, at(model.systems, first).name);
    case "GFLOWFUNCDESC"_key:
        return put_text(value, 80, at(at(model.flow_fields, first).functions, second).description);
    case "GNOQS"_key: return put_count(value, at(at(model.flow_fields, first).functions, second).paths);
    case "GNBRKQ"_key: return put_count(value, at(at(model.flow_fields, first).functions, second).series.times);
    case "GIBC"_key: return put(value, at(at(model.systems, first).boundaries.items, second).segment);
    case "GIWK"_key: return put(value, at(at(model.systems, first).loads.items, second).segment);
    case "GNBFP"_key: return put_count(value, at(at(model.systems, first).boundaries.items, second).series.times);
    case "GNBWK"_key: return put_count(value, at(at(model.systems, first).loads.items, second).series.times);
    case "GPARAMISUSED"_key: return put(value, std::int32_t{1}); // as all parameters of the workloads are
    case "GDESCPARAM"_key:
        return put_text(value, 60, at(at(model.parameter_types, first).instances, second).description);
    default: return;
    }
}

void answer_4(std::int32_t key, void* first, void* second, void* third, void* value)
{
    const Model& model = *served;
    // types are numbered by their ISC numbers in the workloads
    switch (key) {
    case "GCONSTPARAM"_key: return put(value, at(at(at(model.parameter_types, second).instances, third).values, first));
    case "GALLBOUNDFUNC"_key:
        return put_series(third, value, at(at(model.systems, first).boundaries.items, second).series);
    case "GALLLOADFUNC"_key: return put_series(third, value, at(at(model.systems, first).loads.items, second).series);
    case "GIQ"_key:
        return put(value, at(at(at(model.flow_fields, first).functions, second).paths, third).second_segment);
    case "GBQ"_key: return put(value, at(at(at(model.flow_fields, first).functions, second).paths, third).fraction);
    default: return;
    }
}

/// Only GNOQFUNC has five values in the workloads.
void answer_5(void* field, void* function, void* pair, void* time, void* value)
{
    const TimeSeries& series = at(at(served->flow_fields, field).functions, function).series;
    put(time, at(series.times, pair));
    put(value, at(series.values, pair));
}

} // namespace

void serve(const Model& model, std::string_view output_file)
{
    served = &model;
    file_name = output_file;
}

} // namespace velm::bench

// The call forms with the one length that every call has: further ones travel behind it and are not read.
#pragma GCC visibility push(default)
extern "C" {

void host_exchange_1(const char* key, void* value_1, std::int32_t length)
{
    velm::bench::answer_1(velm::bench::position_of(key, length), value_1);
}

void host_exchange_2(const char* key, void* value_1, void* value_2, std::int32_t length)
{
    velm::bench::answer_2(velm::bench::position_of(key, length), value_1, value_2);
}

void host_exchange_3(const char* key, void* value_1, void* value_2, void* value_3, std::int32_t length)
{
    velm::bench::answer_3(velm::bench::position_of(key, length), value_1, value_2, value_3);
}

void host_exchange_4(const char* key, void* value_1, void* value_2, void* value_3, void* value_4, std::int32_t length)
{
    velm::bench::answer_4(velm::bench::position_of(key, length), value_1, value_2, value_3, value_4);
}

void host_exchange_5(const char* /*key*/, void* value_1, void* value_2, void* value_3, void* value_4, void* value_5)
{
    velm::bench::answer_5(value_1, value_2, value_3, value_4, value_5);
}
}
#pragma GCC visibility pop
