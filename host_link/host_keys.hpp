#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace velm {

enum class Kind : std::uint8_t { integer, real, text, series };
enum class Direction : std::uint8_t { in, out };

/// One value of a request.
struct Argument {
    Kind kind{};
    Direction direction{};        ///< in: the host reads it, out: the host fills it
    std::int32_t text_length = 0; ///< characters of a text field; 0 for a text of any length and for other kinds
    std::string_view meaning;     ///< what it is, in the model's words
};

consteval Argument integer_in(std::string_view meaning)
{
    return {Kind::integer, Direction::in, 0, meaning};
}
consteval Argument integer_out(std::string_view meaning)
{
    return {Kind::integer, Direction::out, 0, meaning};
}
consteval Argument real_out(std::string_view meaning)
{
    return {Kind::real, Direction::out, 0, meaning};
}
consteval Argument text_in(std::string_view meaning)
{
    return {Kind::text, Direction::in, 0, meaning};
}
consteval Argument text_out(std::int32_t length, std::string_view meaning)
{
    return {Kind::text, Direction::out, length, meaning};
}
consteval Argument series_out(std::string_view meaning)
{
    return {Kind::series, Direction::out, 0, meaning};
}

/// A host key and the values that travel with it. The number of values is also the number of the call
/// form: a key with three values goes through host_exchange_3.
struct HostKey {
    static constexpr std::size_t most_arguments = 5;

    std::string_view name; ///< without its NUL; the literal it points to has one
    std::array<Argument, most_arguments> arguments{};
    std::size_t argument_count = 0;

    consteval HostKey(std::string_view key_name, std::same_as<Argument> auto... list)
        : name(key_name), arguments{list...}, argument_count(sizeof...(list))
    {
        static_assert(sizeof...(list) >= 1 && sizeof...(list) <= most_arguments);
    }

    /// The length that travels with the key: its characters and one NUL.
    [[nodiscard]] constexpr std::int32_t length() const { return static_cast<std::int32_t>(name.size() + 1); }
};

/// Every key of the host's contract, in the order in which an export first uses them.
inline constexpr HostKey host_keys[] = {
    // the driver and the information panel
    {"GFILENAME", text_out(512, "output file name")},
    {"PINFOHTML", text_in("panel fragment")},
    // system information
    {"GMODELTYPE", integer_out("model type")},
    {"GSEEDTIME", integer_out("start time 1"), integer_out("start time 2"), integer_out("start time 3")},
    {"GSEEDDATE", integer_out("start date 1"), integer_out("start date 2"), integer_out("start date 3")},
    {"GHYDSKIPDATE", integer_out("skip date 1"), integer_out("skip date 2"), integer_out("skip date 3")},
    {"GHYDSKIPTIME", integer_out("skip time 1"), integer_out("skip time 2"), integer_out("skip time 3")},
    {"GENDJULIAN", real_out("Julian end time")},
    {"GNUMSYS", integer_out("number of systems")},
    {"GJMAS", integer_out("mass balance table output option")},
    {"GSOLUTIONTYPE", integer_out("solution technique option")},
    {"GNEGSLN", integer_out("negative solution option")},
    {"GICRD", integer_out("restart option")},
    {"GINTYP", integer_out("time optimization option")},
    {"GVELMTOVELMLINK", integer_out("water-quality module linkage option")},
    {"GFRACMAXTS", real_out("TOPT factor")},
    {"GMAXDT", real_out("maximum time step")},
    {"GMINDT", real_out("minimum time step")},
    {"GMODELOUTPUTINTERVAL", real_out("time and print interval")},
    {"GSYSNAME", integer_in("system"), text_out(30, "system name"), text_out(5, "system tag")},
    {"PPROGRESS", integer_in("progress")},
    // segments
    {"GNUMSEG", integer_out("number of segments")},
    {"GBEDOPT", integer_out("bed volume option")},
    {"GBEDDT", real_out("bed compaction time step")},
    {"GSCALV", real_out("volume scale factor")},
    {"GCONVV", real_out("volume conversion factor")},
    {"GSEGNAME", integer_in("segment"), text_out(40, "segment name")},
    {"GBOTSEG", integer_in("segment"), integer_out("bottom segment")},
    {"GSEGTYPE", integer_in("segment"), integer_out("segment type")},
    {"GIQOPT", integer_out("flow option"), integer_in("segment")}, // the only key whose value comes first
    {"GVOLUME", integer_in("segment"), real_out("volume")},
    {"GVMULT", integer_in("segment"), real_out("velocity multiplier")},
    {"GVEXP", integer_in("segment"), real_out("velocity exponent")},
    {"GDMULT", integer_in("segment"), real_out("depth multiplier")},
    {"GDEXP", integer_in("segment"), real_out("depth exponent")},
    {"GSEGSLOPE", integer_in("segment"), real_out("slope")},
    {"GSEGLENGTH", integer_in("segment"), real_out("length")},
    {"GSEGWIDTH", integer_in("segment"), real_out("width")},
    {"GSEGROUGH", integer_in("segment"), real_out("roughness")},
    {"GSEGMINDEPTH", integer_in("segment"), real_out("minimum depth")},
    {"GINITIALSURFACEELEVATION", integer_in("segment"), real_out("initial surface elevation")},
    {"GBOTTOMELEVATION", integer_in("segment"), real_out("bottom elevation")},
    {"GSIDESLOPE", integer_in("segment"), real_out("side slope")},
    {"GINITIALDEPTH", integer_in("segment"), real_out("initial depth")},
    {"GWEIRHEIGHT", integer_in("segment"), real_out("weir height")},
    {"GWEIRTYPE", integer_in("segment"), real_out("weir type")},
    // flow paths
    {"GNFIELD", integer_out("number of flow fields")},
    {"GHYDROFILE", text_out(512, "hydrodynamic file name")},
    {"GNINQ", integer_in("flow field"), integer_out("number of flow functions")},
    {"GNOQS", integer_in("flow field"), integer_in("flow function"), integer_out("number of flow paths")},
    {"GFLOWFUNCDESC", integer_in("flow field"), integer_in("flow function"), text_out(80, "description")},
    {"GJQ", integer_in("flow field"), integer_in("flow function"), integer_in("flow path"),
     integer_out("first segment")},
    {"GIQ", integer_in("flow field"), integer_in("flow function"), integer_in("flow path"),
     integer_out("second segment")},
    {"GBQ", integer_in("flow field"), integer_in("flow function"), integer_in("flow path"),
     real_out("fraction of flow")},
    // flow time series
    {"GSCALEQ", integer_in("flow field"), real_out("flow scale factor")},
    {"GCONVQ", integer_in("flow field"), real_out("flow conversion factor")},
    {"GNBRKQ", integer_in("flow field"), integer_in("flow function"), integer_out("number of time pairs")},
    {"GNOQFUNC", integer_in("flow field"), integer_in("flow function"), integer_in("time pair"), real_out("time"),
     real_out("flow")},
    // dispersive exchanges
    {"GNRFLD", integer_out("number of exchange fields")},
    {"GNTEX", integer_in("exchange field"), integer_out("number of exchange functions")},
    {"GSCALER", integer_in("exchange field"), real_out("dispersion scale factor")},
    {"GCONVR", integer_in("exchange field"), real_out("dispersion conversion factor")},
    {"GEXCHANGEFUNCDESC", integer_in("exchange field"), integer_in("exchange function"), text_out(80, "description")},
    {"GNORS", integer_in("exchange field"), integer_in("exchange function"), integer_out("number of segment pairs")},
    {"GJRSEG", integer_in("exchange field"), integer_in("exchange function"), integer_in("segment pair"),
     integer_out("first segment")},
    {"GIRSEG", integer_in("exchange field"), integer_in("exchange function"), integer_in("segment pair"),
     integer_out("second segment")},
    {"GXAREA", integer_in("exchange field"), integer_in("exchange function"), integer_in("segment pair"),
     real_out("area")},
    {"GLENGTH", integer_in("exchange field"), integer_in("exchange function"), integer_in("segment pair"),
     real_out("length")},
    {"GNOBRKS", integer_in("exchange field"), integer_in("exchange function"), integer_out("number of time pairs")},
    {"GNORFUNC", integer_in("exchange field"), integer_in("exchange function"), integer_in("time pair"),
     real_out("time"), real_out("dispersion")},
    // boundaries
    {"GNOBC", integer_in("system"), integer_out("number of boundaries")},
    {"GSCALB", integer_in("system"), real_out("boundary scale factor")},
    {"GCONVB", integer_in("system"), real_out("boundary conversion factor")},
    {"GIBC", integer_in("system"), integer_in("boundary"), integer_out("boundary segment")},
    {"GNBFP", integer_in("system"), integer_in("boundary"), integer_out("number of time pairs")},
    {"GALLBOUNDFUNC", integer_in("system"), integer_in("boundary"), series_out("times"), series_out("boundary values")},
    // loads
    {"GLOPT", integer_out("NPS option")},
    {"GNPSFILE", text_out(512, "NPS file name")},
    {"GNOWK", integer_in("system"), integer_out("number of loads")},
    {"GSCALW", integer_in("system"), real_out("load scale factor")},
    {"GCONVW", integer_in("system"), real_out("load conversion factor")},
    {"GIWK", integer_in("system"), integer_in("load"), integer_out("load segment")},
    {"GNBWK", integer_in("system"), integer_in("load"), integer_out("number of time pairs")},
    {"GALLLOADFUNC", integer_in("system"), integer_in("load"), series_out("times"), series_out("load values")},
    // time functions
    {"GNUMTFTYPE", integer_out("number of time-function types")},
    {"GTFISC", integer_in("type"), integer_out("ISC number")},
    {"GNUMTIMEFUNC", integer_in("ISC number"), integer_out("number of time functions")},
    {"GTFISUSED", integer_in("ISC number"), integer_in("time function"), integer_out("used flag")},
    {"GTFDESC", integer_in("ISC number"), integer_in("time function"), text_out(80, "description")},
    {"GNBRKTF", integer_in("ISC number"), integer_in("time function"), integer_out("number of time pairs")},
    {"GBRKTF", integer_in("ISC number"), integer_in("time function"), integer_in("time pair"), real_out("time"),
     real_out("value")},
    // segment parameters
    {"GNUMPARAMTYPE", integer_out("number of parameter types")},
    {"GPARAMISC", integer_in("type"), integer_out("ISC number")},
    {"GNUMPARAMBYISC", integer_in("ISC number"), integer_out("number of instances")},
    {"GPARAMISUSED", integer_in("ISC number"), integer_in("instance"), integer_out("used flag")},
    {"GDESCPARAM", integer_in("ISC number"), integer_in("instance"), text_out(60, "description")},
    {"GSCALEPARAMBYISC", integer_in("ISC number"), integer_in("instance"), real_out("scale factor")},
    {"GCONSTPARAM", integer_in("segment"), integer_in("ISC number"), integer_in("instance"),
     real_out("parameter value")},
    // constants
    {"GNUMCONST", integer_out("number of constant types")},
    {"GCONSTTYPEISC", integer_in("type"), integer_out("ISC number")},
    {"GNUMCONSTBYISC", integer_in("ISC number"), integer_out("number of instances")},
    {"GCONSTISUSED", integer_in("ISC number"), integer_in("instance"), integer_out("used flag")},
    {"GCONSTVALUEBYISC", integer_in("ISC number"), integer_in("instance"), real_out("constant value")},
    {"GCONSTDESCBYISC", integer_in("ISC number"), integer_in("instance"), text_out(60, "description")},
    // initial conditions
    {"GIFIELD", integer_in("system"), integer_out("solids transport field")},
    {"GDENSITY", integer_in("system"), real_out("solids density")},
    {"GCMAX", integer_in("system"), real_out("maximum allowed concentration")},
    {"GINITC", integer_in("system"), integer_in("segment"), real_out("initial concentration")},
    {"GFDISS", integer_in("system"), integer_in("segment"), real_out("dissolved fraction")},
};

inline constexpr std::size_t host_key_count = std::size(host_keys);
static_assert(host_key_count == 109, "the host's contract has 109 keys");

/// Position of a key in host_keys, or host_key_count when the host's contract has no such key.
constexpr std::size_t host_key_position(std::string_view name)
{
    for (std::size_t i = 0; i < host_key_count; ++i) {
        if (host_keys[i].name == name) {
            return i;
        }
    }
    return host_key_count;
}

} // namespace velm
