#include "tests/velm_export/export_case.hpp"

#include <gtest/gtest.h>

namespace velm {
namespace {

const SectionCase system_information[] = {
    {"every value different: date before time, minimum before maximum time step, names ended and tags not", 1,
     R"(GMODELTYPE() = 7
        GSEEDTIME() = 1 2 3
        GSEEDDATE() = 4 5 6
        GHYDSKIPDATE() = 7 8 9
        GHYDSKIPTIME() = 10 11 12
        GENDJULIAN() = 365.25
        GNUMSYS() = 2
        GJMAS() = 21
        GSOLUTIONTYPE() = 22
        GNEGSLN() = 23
        GICRD() = 24
        GINTYP() = 25
        GVELMTOVELMLINK() = -26
        GFRACMAXTS() = 0.9
        GMAXDT() = 1.5
        GMINDT() = 0.0001
        GMODELOUTPUTINTERVAL() = 0.25
        GSYSNAME(1) = "Ammonia" "NH4"
        GSYSNAME(2) = 'DO' 'x')",
     R"(GMODELTYPE() 11 GSEEDTIME() 10 GSEEDDATE() 10 GHYDSKIPDATE() 13 GHYDSKIPTIME() 13 GENDJULIAN() 11
        GNUMSYS() 8 GJMAS() 6 GSOLUTIONTYPE() 14 GNEGSLN() 8 GICRD() 6 GINTYP() 7 GVELMTOVELMLINK() 16
        GFRACMAXTS() 11 GMAXDT() 7 GMINDT() 7 GMODELOUTPUTINTERVAL() 21 GSYSNAME(1) 9 30 5 GSYSNAME(2) 9 30 5
        PPROGRESS(0) 10)",
     R"(
    7      3          Module Type, Version$
 ======================== Model Parameterization ===================================$
    4    5    6    1    2    3     Start date and time$
    7    8    9   10   11   12     Skip date and time$
     365.3          Julian end time$
    2               Number of Systems$
   21               Mass Balance Table Output$
   22               Solution Technique Option$
   23               Negative Solution Option$
   24               Restart Option$
   25               Time Optimization Option$
  -26               WQ Module Linkage Option$
    0.9000          TOPT Factor$
0.000100  1.500     Min and Max Timestep$
    0.2500     Time and Print Interval$
NH4       Ammonia{NUL}{22 blanks}$
x{4 NUL}     DO{28 NUL}$
)"},
    {"a full name has no room for a NUL; a NUL is no blank to cut; bytes above 127; columns that overflow", 1,
     R"(GMODELTYPE() = 100000
        GSEEDDATE() = -10000 -9999 99999
        GENDJULIAN() = 123456792
        GNUMSYS() = 3
        GMAXDT() = 99.9996
        GMINDT() = -0.0001
        GSYSNAME(1) = "123456789012345678901234567890" "12345"
        GSYSNAME(2) = "a\0" "\xE4"
        GSYSNAME(3) = "" "")",
     "", R"(
*****      3          Module Type, Version$
 ======================== Model Parameterization ===================================$
*****-999999999    0    0    0     Start date and time$
    0    0    0    0    0    0     Skip date and time$
**********          Julian end time$
    3               Number of Systems$
    0               Mass Balance Table Output$
    0               Solution Technique Option$
    0               Negative Solution Option$
    0               Restart Option$
    0               Time Optimization Option$
    0               WQ Module Linkage Option$
    0.0000          TOPT Factor$
-.000100 ******     Min and Max Timestep$
    0.0000     Time and Print Interval$
12345     123456789012345678901234567890$
{E4}         a{2 NUL}{27 blanks}$
          {NUL}{29 blanks}$
)"},
};

TEST(SystemInformation, asks_and_writes)
{
    for (const SectionCase& row : system_information) {
        check(row);
    }
}

TEST(SystemInformation, reports_progress_when_there_are_no_systems_too)
{
    const TestFolder folder;
    ScriptedHost host("GNUMSYS() = -1", folder.path / "model.inp");
    run_export(host);
    const std::string requests = host.requests_after("System Information is being Exported");
    EXPECT_NE(requests.find("GMODELOUTPUTINTERVAL() 21\nPPROGRESS(0) 10\n"), std::string::npos) << requests;
}

const std::string geometry_caption =
    " Seg BotSeg iType IQOPT     Volume          VMult          Vexp          DMult           Dexp         Length"
    "          Slope         Width           Rough         Depth_Q0       SurfElev      SegBotElev    SegSideSlope"
    "   SegInitDepth    WeirHeight       WeirType$\n";

const SectionCase segments[] = {
    {"no segments", 2, "", "GNUMSEG() 8 GBEDOPT() 8 GBEDDT() 7 GSCALV() 7 GCONVV() 7", R"(
    0               Number of Segments$
    0               Bed Volume Option$
     0.000          Bed Compaction Time Step$
      0.000000      0.000000  Volume Scale & Conversion Factor$
  Segment   SegName$
)" + geometry_caption},
    {"slope is asked before the length and written behind it", 2,
     R"(GNUMSEG() = 1
        GBEDOPT() = 2
        GBEDDT() = 0.5
        GSCALV() = 1
        GCONVV() = 0.0283168
        GSEGNAME(1) = "River"
        GBOTSEG(1) = 3
        GSEGTYPE(1) = 2
        GIQOPT(1) = 4
        GVOLUME(1) = 1
        GVMULT(1) = 2
        GVEXP(1) = 3
        GDMULT(1) = 4
        GDEXP(1) = 5
        GSEGSLOPE(1) = 6
        GSEGLENGTH(1) = 7
        GSEGWIDTH(1) = 8
        GSEGROUGH(1) = 9
        GSEGMINDEPTH(1) = 10
        GINITIALSURFACEELEVATION(1) = 11
        GBOTTOMELEVATION(1) = 12
        GSIDESLOPE(1) = 13
        GINITIALDEPTH(1) = 14
        GWEIRHEIGHT(1) = 15
        GWEIRTYPE(1) = 16)",
     R"(GNUMSEG() 8 GBEDOPT() 8 GBEDDT() 7 GSCALV() 7 GCONVV() 7 GSEGNAME(1) 9 40
        GBOTSEG(1) 8 GSEGTYPE(1) 9 GIQOPT(1) 7 GVOLUME(1) 8 GVMULT(1) 7 GVEXP(1) 6 GDMULT(1) 7 GDEXP(1) 6
        GSEGSLOPE(1) 10 GSEGLENGTH(1) 11 GSEGWIDTH(1) 10 GSEGROUGH(1) 10 GSEGMINDEPTH(1) 13
        GINITIALSURFACEELEVATION(1) 25 GBOTTOMELEVATION(1) 17 GSIDESLOPE(1) 11 GINITIALDEPTH(1) 14
        GWEIRHEIGHT(1) 12 GWEIRTYPE(1) 10)",
     R"(
    1               Number of Segments$
    2               Bed Volume Option$
     0.500          Bed Compaction Time Step$
      1.000000      0.028317  Volume Scale & Conversion Factor$
  Segment   SegName$
    1     River{NUL}{34 blanks}$
)" + geometry_caption +
         "    1    3    2    4"
         "        1.00000        2.00000        3.00000        4.00000        5.00000"
         "        7.00000        6.00000        8.00000        9.00000       10.00000"
         "       11.00000       12.00000       13.00000       14.00000       15.00000       16.00000$\n"},
    {"all names come before the geometry; a full name, one the host ends itself, one it leaves alone; overflow", 2,
     R"(GNUMSEG() = 3
        GBEDDT() = 1000000
        GSCALV() = 9999999
        GCONVV() = 10000000
        GSEGNAME(1) = "1234567890123456789012345678901234567890"
        GSEGNAME(2) = 'bed\0'
        GSEGNAME(3) = -
        GIQOPT = 100000
        GVOLUME = 999999995
        GVMULT = -99999999
        GWEIRTYPE = -0.000001)",
     "",
     R"(
    3               Number of Segments$
    0               Bed Volume Option$
**********          Bed Compaction Time Step$
9999999.000000**************  Volume Scale & Conversion Factor$
  Segment   SegName$
    1     1234567890123456789012345678901234567890$
    2     bed{37 NUL}$
    3     {40 NUL}$
)" + geometry_caption +
         [] {
             std::string rows;
             for (const char* segment : {"    1", "    2", "    3"}) {
                 rows += segment;
                 rows += "    0    0*****"
                         "******************************        0.00000        0.00000        0.00000"
                         "        0.00000        0.00000        0.00000        0.00000        0.00000"
                         "        0.00000        0.00000        0.00000        0.00000        0.00000"
                         "        0.00000$\n";
             }
             return rows;
         }()},
};

TEST(Segments, asks_and_writes)
{
    for (const SectionCase& row : segments) {
        check(row);
    }
}

const SectionCase flow_paths[] = {
    {"no flow fields", 3, "GNFIELD() = -2", "GNFIELD() 8", R"(
               Flow Pathways$
   -2               Number of flow fields$
)"},
    {"a hydrodynamic file for the first field; functions with and without paths; a field without functions", 3,
     R"(GNUMSEG() = 1
        GIQOPT(1) = 3
        GNFIELD() = 2
        GHYDROFILE() = "flow.hyd"
        GNINQ(1) = 2
        GNOQS(1,1) = 2
        GFLOWFUNCDESC(1,1) = "River"
        GJQ(1,1,1) = 1
        GIQ(1,1,1) = 2
        GBQ(1,1,1) = 0.333
        GJQ(1,1,2) = 10000
        GBQ(1,1,2) = -1
        GNOQS(1,2) = 0
        GFLOWFUNCDESC(1,2) = "Rain \xB0\0C")",
     R"(GNFIELD() 8 GHYDROFILE() 11 512 GNINQ(1) 6 GNOQS(1,1) 6 GFLOWFUNCDESC(1,1) 14 80
        GJQ(1,1,1) 4 GIQ(1,1,1) 4 GBQ(1,1,1) 4 GJQ(1,1,2) 4 GIQ(1,1,2) 4 GBQ(1,1,2) 4
        GNOQS(1,2) 6 GFLOWFUNCDESC(1,2) 14 80 GNINQ(2) 6)",
     R"(
               Flow Pathways$
    2               Number of flow fields$
     Flow Field   1$
 flow.hyd{504 blanks}$
    2               Number of Flow Functions for Flow Field$
 River{75 blanks}$
  2$
   1     2           0.33$
****     0          -1.00$
 Rain {B0}{NUL}C{72 blanks}$
  0$
     Flow Field   2$
    0               Number of Flow Functions for Flow Field$
)"},
    {"another flow option asks for no hydrodynamic file; counts below 0 are written", 3,
     R"(GNUMSEG() = 1
        GIQOPT(1) = 2
        GNFIELD() = 1
        GNINQ(1) = 1
        GNOQS(1,1) = -5)",
     "GNFIELD() 8 GNINQ(1) 6 GNOQS(1,1) 6 GFLOWFUNCDESC(1,1) 14 80", R"(
               Flow Pathways$
    1               Number of flow fields$
     Flow Field   1$
    1               Number of Flow Functions for Flow Field$
{81 blanks}$
 -5$
)"},
    {"without segments no option is 3, not even that of an earlier export", 3, "GNFIELD() = 1",
     "GNFIELD() 8 GNINQ(1) 6", R"(
               Flow Pathways$
    1               Number of flow fields$
     Flow Field   1$
    0               Number of Flow Functions for Flow Field$
)"},
};

TEST(FlowPaths, asks_and_writes)
{
    for (const SectionCase& row : flow_paths) {
        check(row);
    }
}

const SectionCase flow_series[] = {
    {"no flow fields at the second request", 4, "GNFIELD() = 1 / 0", "GNFIELD() 8", R"(
    0               Number of Flow Fields$
)"},
    {"more flow fields at the second request, and more than have names", 4,
     R"(GNFIELD() = 1 / 7
        GNINQ(1) = 0 / 2
        GNINQ(6) = -1
        GSCALEQ(1) = 2
        GCONVQ(1) = 0.0283168
        GFLOWFUNCDESC(1,1) = "123456789012345678901234567890cut off"
        GFLOWFUNCDESC(1,2) = "short"
        GNBRKQ(1,1) = 2
        GNOQFUNC(1,1,1) = 0 12.5
        GNOQFUNC(1,1,2) = -1.5 1000000)",
     R"(GNFIELD() 8 GNINQ(1) 6 GSCALEQ(1) 8 GCONVQ(1) 7
        GFLOWFUNCDESC(1,1) 14 80 GNBRKQ(1,1) 7 GNOQFUNC(1,1,1) 9 GNOQFUNC(1,1,2) 9
        GFLOWFUNCDESC(1,2) 14 80 GNBRKQ(1,2) 7
        GNINQ(2) 6 GNINQ(3) 6 GNINQ(4) 6 GNINQ(5) 6 GNINQ(6) 6 GNINQ(7) 6)",
     R"(
    7               Number of Flow Fields$
 Surface Water Flow Field{NUL}               $
    2               Number of inflows$
      2.000000      0.028317  Flow Scale & Conversion Factors$
123456789012345678901234567890$
    2               Number of Time Pairs$
  0.000000  12.5000$
 -1.50000  1.000000E+06$
short{25 blanks}$
    0               Number of Time Pairs$
 Porewater Flow Field{NUL}{19 blanks}$
    0               Number of inflows$
 Solids - 1{NUL}{29 blanks}$
    0               Number of inflows$
 Solids - 2{NUL}{29 blanks}$
    0               Number of inflows$
 Solids - 3{NUL}{29 blanks}$
    0               Number of inflows$
 Evap/Precip Flow Field{NUL}{17 blanks}$
   -1               Number of inflows$
 Flow Field 7{NUL}{27 blanks}$
    0               Number of inflows$
)"},
};

TEST(FlowSeries, asks_and_writes)
{
    for (const SectionCase& row : flow_series) {
        check(row);
    }
}

} // namespace
} // namespace velm
