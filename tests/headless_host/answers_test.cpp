#include "headless_host/headless_host.hpp"
#include "tests/headless_host/asking.hpp"
#include "tests/headless_host/sample_model.hpp"

#include <gtest/gtest.h>

#include <set>

namespace velm {
namespace {

struct Case {
    std::string key;
    std::vector<std::int32_t> in_arguments;
    std::string answer;
};

const Case cases[] = {
    {"GFILENAME", {}, "'out/mouth.inp'"},
    {"GMODELTYPE", {}, "2"},
    {"GSEEDTIME", {}, "7 30 15"},
    {"GSEEDDATE", {}, "2024 3 1"},
    {"GHYDSKIPDATE", {}, "2025 4 2"},
    {"GHYDSKIPTIME", {}, "8 31 16"},
    {"GENDJULIAN", {}, "365.5"},
    {"GNUMSYS", {}, "2"},
    {"GJMAS", {}, "31"},
    {"GSOLUTIONTYPE", {}, "32"},
    {"GNEGSLN", {}, "33"},
    {"GICRD", {}, "34"},
    {"GINTYP", {}, "35"},
    {"GVELMTOVELMLINK", {}, "36"},
    {"GFRACMAXTS", {}, "0.9"},
    {"GMAXDT", {}, "0.5"},
    {"GMINDT", {}, "0.001"},
    {"GMODELOUTPUTINTERVAL", {}, "0.25"},
    {"GSYSNAME", {1}, "'Ammonia' 'NH3'"},
    {"GSYSNAME", {2}, "'' ''"},
    {"PPROGRESS", {0}, ""},

    {"GNUMSEG", {}, "2"},
    {"GBEDOPT", {}, "37"},
    {"GBEDDT", {}, "38"},
    {"GSCALV", {}, "39"},
    {"GCONVV", {}, "40"},
    {"GSEGNAME", {2}, "'Mouth'"},
    {"GBOTSEG", {2}, "7"},
    {"GSEGTYPE", {2}, "4"},
    {"GIQOPT", {1}, "3"},
    {"GIQOPT", {2}, "2"},
    {"GVOLUME", {2}, "1000.5"},
    {"GVMULT", {2}, "11"},
    {"GVEXP", {2}, "12"},
    {"GDMULT", {2}, "13"},
    {"GDEXP", {2}, "14"},
    {"GSEGSLOPE", {2}, "15"},
    {"GSEGLENGTH", {2}, "16"},
    {"GSEGWIDTH", {2}, "17"},
    {"GSEGROUGH", {2}, "18"},
    {"GSEGMINDEPTH", {2}, "19"},
    {"GINITIALSURFACEELEVATION", {2}, "20"},
    {"GBOTTOMELEVATION", {2}, "21"},
    {"GSIDESLOPE", {2}, "22"},
    {"GINITIALDEPTH", {2}, "23"},
    {"GWEIRHEIGHT", {2}, "24"},
    {"GWEIRTYPE", {2}, "25"},

    {"GNFIELD", {}, "2"},
    {"GHYDROFILE", {}, "'flows.hyd'"},
    {"GNINQ", {1}, "0"},
    {"GNINQ", {2}, "2"},
    {"GNOQS", {2, 2}, "2"},
    {"GFLOWFUNCDESC", {2, 2}, "'Brook'"},
    {"GJQ", {2, 2, 2}, "1"},
    {"GIQ", {2, 2, 2}, "2"},
    {"GBQ", {2, 2, 2}, "0.375"},
    {"GSCALEQ", {2}, "1.25"},
    {"GCONVQ", {2}, "0.0283"},
    {"GNBRKQ", {2, 2}, "3"},
    {"GNOQFUNC", {2, 2, 3}, "2 32"},

    {"GNRFLD", {}, "1"},
    {"GNTEX", {1}, "1"},
    {"GSCALER", {1}, "1.125"},
    {"GCONVR", {1}, "1.375"},
    {"GEXCHANGEFUNCDESC", {1, 1}, "'Mixing'"},
    {"GNORS", {1, 1}, "2"},
    {"GJRSEG", {1, 1, 2}, "1"},
    {"GIRSEG", {1, 1, 2}, "2"},
    {"GXAREA", {1, 1, 2}, "600"},
    {"GLENGTH", {1, 1, 2}, "60"},
    {"GNOBRKS", {1, 1}, "2"},
    {"GNORFUNC", {1, 1, 1}, "3 40"},

    {"GNOBC", {1}, "2"},
    {"GNOBC", {2}, "0"},
    {"GSCALB", {1}, "1.5"},
    {"GCONVB", {1}, "2.5"},
    {"GIBC", {1, 2}, "9"},
    {"GNBFP", {1, 1}, "2"},
    {"GALLBOUNDFUNC", {1, 1}, "[0 10] [0.5 0.25]"},
    {"GALLBOUNDFUNC", {1, 2}, "? ?"}, // an empty series is answered by writing nothing

    {"GLOPT", {}, "1"},
    {"GNPSFILE", {}, "'runoff.nps'"},
    {"GNOWK", {1}, "1"},
    {"GSCALW", {1}, "3.5"},
    {"GCONVW", {1}, "4.5"},
    {"GIWK", {1, 1}, "2"},
    {"GNBWK", {1, 1}, "3"},
    {"GALLLOADFUNC", {1, 1}, "[5 6 7] [8 9 10]"},

    {"GNUMTFTYPE", {}, "2"},
    {"GTFISC", {2}, "-3"},
    {"GNUMTIMEFUNC", {70}, "0"},
    {"GNUMTIMEFUNC", {-3}, "2"},
    {"GTFISUSED", {70, 1}, "0"}, // asked although the type has none
    {"GTFISUSED", {-3, 1}, "0"},
    {"GTFISUSED", {-3, 2}, "1"},
    {"GTFDESC", {-3, 2}, "'Light'"},
    {"GNBRKTF", {-3, 2}, "2"},
    {"GBRKTF", {-3, 2, 2}, "2 151"},

    {"GNUMPARAMTYPE", {}, "2"},
    {"GPARAMISC", {2}, "22"},
    {"GNUMPARAMBYISC", {21}, "1"},
    {"GPARAMISUSED", {21, 1}, "1"},
    {"GDESCPARAM", {21, 1}, "'Shading'"},
    {"GSCALEPARAMBYISC", {21, 1}, "0.5"},
    {"GCONSTPARAM", {2, 21, 1}, "0.25"},

    {"GNUMCONST", {}, "1"},
    {"GCONSTTYPEISC", {1}, "11"},
    {"GNUMCONSTBYISC", {11}, "2"},
    {"GCONSTISUSED", {11, 1}, "0"},
    {"GCONSTISUSED", {11, 2}, "1"},
    {"GCONSTVALUEBYISC", {11, 2}, "0.0625"},
    {"GCONSTDESCBYISC", {11, 2}, "'Decay'"},

    {"GIFIELD", {1}, "3"},
    {"GDENSITY", {1}, "2.65"},
    {"GCMAX", {1}, "1000"},
    {"GINITC", {1, 2}, "2.25"},
    {"GFDISS", {1, 2}, "0.75"},
};

TEST(Answers, EveryKeyFetchesItsDatum)
{
    const Model model = sample_model();
    HeadlessHost host(model, "out/mouth.inp");
    velm_host_attach(&HeadlessHost::answer, &host);
    std::set<std::string> asked = {"PINFOHTML"}; // has no answer; see the panel's tests
    for (const Case& row : cases) {
        EXPECT_EQ(ask(row.key, row.in_arguments), row.answer) << row.key;
        asked.insert(row.key);
    }
    EXPECT_EQ(asked.size(), std::size(host_keys));
    EXPECT_EQ(host.requests(), std::size(cases));
    EXPECT_EQ(host.faults(), std::vector<std::string>{});
}

TEST(Answers, TextsFillTheirFieldWithBlanksBehindThem)
{
    struct {
        std::string name;
        std::string field;
    } const rows[] = {
        {"", "                                        "},
        {"Upper \xE9"
         "bb",
         "Upper \xE9"
         "bb                               "},
        {"A name that takes up the field's 40 byte", "A name that takes up the field's 40 byte"},
    };
    for (const auto& row : rows) {
        Model model;
        model.segments.resize(1);
        model.segments[0].name = row.name;
        HeadlessHost host(model, "a");
        velm_host_attach(&HeadlessHost::answer, &host);
        std::int32_t segment = 1;
        std::string field(40, '\0');
        call(std::string("GSEGNAME") + '\0', {&segment, field.data()}, {40});
        EXPECT_EQ(field, row.field);
        EXPECT_EQ(host.fault_count(), 0U);
    }
}

} // namespace
} // namespace velm
