#include "tests/velm_export/export_case.hpp"

#include <gtest/gtest.h>

namespace velm {
namespace {

const SectionCase exchanges[] = {
    {"no exchange fields", 5, "GNRFLD() = 0", "GNRFLD() 7", R"(
    0               Number of Exchange Fields$
)"},
    {"fields without functions around one that has them, the last beyond the names", 5,
     R"(GNRFLD() = 3
        GNTEX(2) = 2
        GNTEX(3) = -1
        GSCALER(2) = 1
        GCONVR(2) = 10
        GEXCHANGEFUNCDESC(2,1) = "Mixing"
        GNORS(2,1) = 1
        GJRSEG(2,1,1) = 3
        GIRSEG(2,1,1) = -4
        GXAREA(2,1,1) = 2500
        GLENGTH(2,1,1) = 0.05
        GNOBRKS(2,1) = 2
        GNORFUNC(2,1,1) = 0 0.1
        GNORFUNC(2,1,2) = 365 -2
        GEXCHANGEFUNCDESC(2,2) = "None"
        GNORS(2,2) = -1)",
     R"(GNRFLD() 7 GNTEX(1) 6 GNTEX(2) 6 GSCALER(2) 8 GCONVR(2) 7
        GEXCHANGEFUNCDESC(2,1) 18 80 GNORS(2,1) 6 GJRSEG(2,1,1) 7 GIRSEG(2,1,1) 7 GXAREA(2,1,1) 7 GLENGTH(2,1,1) 8
        GNOBRKS(2,1) 8 GNORFUNC(2,1,1) 9 GNORFUNC(2,1,2) 9
        GEXCHANGEFUNCDESC(2,2) 18 80 GNORS(2,2) 6 GNOBRKS(2,2) 8 GNTEX(3) 6)",
     R"(
    3               Number of Exchange Fields$
 Surface Water Flow Field{NUL}               $
    0               Number of Exchange Functions$
 Porewater Flow Field{NUL}{19 blanks}$
    2               Number of Exchange Functions$
      1.000000     10.000000  Dispersion Scale & Conversion Factors$
 Mixing{74 blanks}$
    1               Number of segment exchange pairs$
  3 -4  2500.00  5.000000E-02$
    2               Number of Time Pairs$
  0.000000  0.100000$
  365.000 -2.00000$
 None{76 blanks}$
   -1               Number of segment exchange pairs$
    0               Number of Time Pairs$
 Exchange Field 3{NUL}{23 blanks}$
   -1               Number of Exchange Functions$
)"},
};

TEST(Exchanges, asks_and_writes)
{
    for (const SectionCase& row : exchanges) {
        check(row);
    }
}

const SectionCase boundaries[] = {
    {"no systems", 6, "GNUMSYS() = -3", "GNRFLD() 7", R"(
   -3               Number of Systems$
)"},
    {"both counts of a boundary before either record; the series is asked for when it is empty too", 6,
     R"(GNUMSYS() = 2
        GSYSNAME(1) = "Ammonia" "NH4"
        GSYSNAME(2) = "Oxygen" "DO"
        GNOBC(1) = 2
        GSCALB(1) = 1.5
        GCONVB(1) = -2
        GIBC(1,1) = 5
        GNBFP(1,1) = 2
        GALLBOUNDFUNC(1,1) = 0,365 1.5,-0.5
        GIBC(1,2) = -1
        GNBFP(1,2) = 0)",
     R"(GNRFLD() 7 GNOBC(1) 6 GSCALB(1) 7 GCONVB(1) 7 GIBC(1,1) 5 GNBFP(1,1) 6 GALLBOUNDFUNC(1,1) 14
        GIBC(1,2) 5 GNBFP(1,2) 6 GALLBOUNDFUNC(1,2) 14 GNOBC(2) 6)",
     R"(
    2               Number of Systems$
 Ammonia{NUL}{22 blanks}$
    2               Number of boundaries$
      1.500000     -2.000000  Boundary Scale & Conversion Factors$
    5               Boundary Segment Number$
    2               Number of Time Pairs$
  0.000000  1.50000$
  365.000 -0.500000$
   -1               Boundary Segment Number$
    0               Number of Time Pairs$
 Oxygen{NUL}{23 blanks}$
    0               Number of boundaries$
)"},
};

TEST(Boundaries, asks_and_writes)
{
    for (const SectionCase& row : boundaries) {
        check(row);
    }
}

const SectionCase loads[] = {
    {"an option of 0 or less names no file", 7, "GLOPT() = -1", "GLOPT() 6", R"(
   -1               NPS Input Option (0=No, 1=Yes){16 blanks}LOADFILE$
    0               Number of Systems$
)"},
    {"an option above 0 does; pairs in columns; the series is asked for when it is empty too", 7,
     R"(GNUMSYS() = 2
        GSYSNAME = "Silt" ""
        GLOPT() = 2
        GNPSFILE() = "nps.dat"
        GNOWK(1) = 2
        GNOWK(2) = -1
        GSCALW(1) = 1
        GCONVW(1) = 86.4
        GIWK(1,1) = 7
        GNBWK(1,1) = 2
        GALLLOADFUNC(1,1) = 1.5,100000 -0.25,-0.00001
        GIWK(1,2) = 8
        GNBWK(1,2) = -1)",
     R"(GLOPT() 6 GNPSFILE() 9 512 GNOWK(1) 6 GSCALW(1) 7 GCONVW(1) 7 GIWK(1,1) 5 GNBWK(1,1) 6
        GALLLOADFUNC(1,1) 13 GIWK(1,2) 5 GNBWK(1,2) 6 GALLLOADFUNC(1,2) 13 GNOWK(2) 6)",
     R"(
    2               NPS Input Option (0=No, 1=Yes){16 blanks}LOADFILE$
nps.dat{505 blanks}$
    2               Number of Systems$
 Silt{NUL}{25 blanks}$
    2               Number of Loadings$
      1.000000     86.400001  Loading Scale & Conversion Factors$
    7               Loading Segment Number$
    2               Number of Time Pairs$
    1.5000        -0.2500$
**********         0.0000$
    8               Loading Segment Number$
   -1               Number of Time Pairs$
 Silt{NUL}{25 blanks}$
   -1               Number of Loadings$
)"},
};

TEST(Loads, asks_and_writes)
{
    for (const SectionCase& row : loads) {
        check(row);
    }
}

const SectionCase time_functions[] = {
    {"no types", 8, "GNUMTFTYPE() = -1", "GNUMTFTYPE() 11", R"(
    0               Number of Time Functions$
)"},
    {"a count of 0 is one function, one below 0 none; exactly 1 is used", 8,
     R"(GNUMTFTYPE() = 3
        GTFISC(1) = 5
        GTFISC(2) = 7
        GTFISC(3) = 9
        GNUMTIMEFUNC(5) = 0
        GNUMTIMEFUNC(7) = 2
        GNUMTIMEFUNC(9) = -1
        GTFISUSED(5,1) = 1
        GTFISUSED(7,1) = 2
        GTFISUSED(7,2) = -1
        GTFDESC(5,1) = "Water temperature"
        GNBRKTF(5,1) = 2
        GBRKTF(5,1,1) = 0 12.5
        GBRKTF(5,1,2) = 365 -0.5)",
     R"(GNUMTFTYPE() 11
        GTFISC(1) 7 GNUMTIMEFUNC(5) 13 GTFISUSED(5,1) 10
        GTFISC(2) 7 GNUMTIMEFUNC(7) 13 GTFISUSED(7,1) 10 GTFISUSED(7,2) 10 GTFISC(3) 7 GNUMTIMEFUNC(9) 13
        GTFISC(1) 7 GNUMTIMEFUNC(5) 13 GTFISUSED(5,1) 10
        GTFDESC(5,1) 8 80 GNBRKTF(5,1) 8 GBRKTF(5,1,1) 7 GBRKTF(5,1,2) 7
        GTFISC(2) 7 GNUMTIMEFUNC(7) 13 GTFISUSED(7,1) 10 GTFISUSED(7,2) 10 GTFISC(3) 7 GNUMTIMEFUNC(9) 13)",
     R"(
    1               Number of Time Functions$
       5       1     Water temperature{23 blanks}$
    2               Number of Time Pairs$
    0.0000        12.5000$
  365.0000        -0.5000$
)"},
    {"the passes disagree; descriptions are cleared before each request and not trimmed; no pairs, no count", 8,
     R"(GNUMTFTYPE() = 1
        GTFISC(1) = 1000 / 999
        GNUMTIMEFUNC(1000) = 1
        GNUMTIMEFUNC(999) = 4
        GTFISUSED(1000,1) = 0
        GTFISUSED(999) = 1
        GTFDESC(999,1) = "1234567890123456789012345678901234567890cut off"
        GTFDESC(999,2) = -
        GTFDESC(999,3) = 'abc'
        GTFDESC(999,4) = "abc\0"
        GNBRKTF(999,1) = -1
        GNBRKTF(999,2) = -
        GNBRKTF(999,3) = 0)",
     "", R"(
    0               Number of Time Functions$
     999       1     1234567890123456789012345678901234567890$
     999       2     {40 NUL}$
     999       3     abc{37 NUL}$
     999       4     abc{NUL}{36 blanks}$
)"},
};

TEST(TimeFunctions, asks_and_writes)
{
    for (const SectionCase& row : time_functions) {
        check(row);
    }
}

} // namespace
} // namespace velm
