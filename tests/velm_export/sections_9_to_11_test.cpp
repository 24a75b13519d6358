#include "tests/velm_export/export_case.hpp"

#include <gtest/gtest.h>

namespace velm {
namespace {

const SectionCase parameters[] = {
    {"no types: both headings and a line for each segment", 9, "GNUMSEG() = 2", "GNUMPARAMTYPE() 14", R"(
    2               Number of Segments$
    0               Number of Segment Parameters$
======================== Scale Factors ====================================$
======================== Segment Assignments ====================================$
    1     Segment$
    2     Segment$
)"},
    {"1 or more is in use; each instance has its own description; the assignments ask neither type nor count", 9,
     R"(GNUMSEG() = 1
        GNUMPARAMTYPE() = 2
        GPARAMISC(1) = 3
        GPARAMISC(2) = 4
        GNUMPARAMBYISC(3) = 3
        GNUMPARAMBYISC(4) = 0
        GPARAMISUSED(3,1) = 1
        GPARAMISUSED(3,2) = -1
        GPARAMISUSED(3,3) = 2
        GDESCPARAM(3,1) = "Wind shading \xE9"
        GDESCPARAM(3,3) = "1234567890123456789012345678901234567890cut off"
        GSCALEPARAMBYISC(3,1) = 1
        GSCALEPARAMBYISC(3,3) = 12345.678
        GCONSTPARAM(1,3,1) = 1.5
        GCONSTPARAM(1,3,3) = 123456.79)",
     R"(GNUMPARAMTYPE() 14
        GPARAMISC(1) 10 GNUMPARAMBYISC(3) 15 GPARAMISUSED(3,1) 13 GPARAMISUSED(3,2) 13 GPARAMISUSED(3,3) 13
        GPARAMISC(2) 10 GNUMPARAMBYISC(4) 15
        GPARAMISC(1) 10 GNUMPARAMBYISC(3) 15
        GPARAMISUSED(3,1) 13 GDESCPARAM(3,1) 11 60 GSCALEPARAMBYISC(3,1) 17 GPARAMISUSED(3,2) 13
        GPARAMISUSED(3,3) 13 GDESCPARAM(3,3) 11 60 GSCALEPARAMBYISC(3,3) 17
        GPARAMISC(2) 10 GNUMPARAMBYISC(4) 15
        GPARAMISUSED(3,1) 13 GCONSTPARAM(1,3,1) 12 GPARAMISUSED(3,2) 13 GPARAMISUSED(3,3) 13 GCONSTPARAM(1,3,3) 12)",
     R"(
    1               Number of Segments$
    2               Number of Segment Parameters$
======================== Scale Factors ====================================$
ISC #:     3 Instance:   1 Scale:     1.0000 Description:Wind shading {E9}{26 blanks}$
ISC #:     3 Instance:   3 Scale: 12345.6800 Description:1234567890123456789012345678901234567890$
======================== Segment Assignments ====================================$
    1     Segment$
Parameter:     3      Instance:   1  Value:               1.5000$
Parameter:     3      Instance:   3  Value:          123456.8000$
)"},
    {"the three passes disagree", 9,
     R"(GNUMSEG() = 2
        GNUMPARAMTYPE() = 1
        GPARAMISC(1) = 100000 / 6
        GNUMPARAMBYISC(100000) = 2
        GNUMPARAMBYISC(6) = 1
        GPARAMISUSED(100000) = 1
        GPARAMISUSED(6,1) = 1 / 0 / 3
        GDESCPARAM = "fetch"
        GCONSTPARAM(2,6,1) = -1)",
     R"(GNUMPARAMTYPE() 14 GPARAMISC(1) 10 GNUMPARAMBYISC(100000) 15 GPARAMISUSED(100000,1) 13
        GPARAMISUSED(100000,2) 13 GPARAMISC(1) 10 GNUMPARAMBYISC(6) 15 GPARAMISUSED(6,1) 13
        GDESCPARAM(6,1) 11 60 GSCALEPARAMBYISC(6,1) 17
        GPARAMISUSED(6,1) 13 GPARAMISUSED(6,1) 13 GCONSTPARAM(2,6,1) 12)",
     R"(
    2               Number of Segments$
    2               Number of Segment Parameters$
======================== Scale Factors ====================================$
ISC #:     6 Instance:   1 Scale:     0.0000 Description:fetch{35 blanks}$
======================== Segment Assignments ====================================$
    1     Segment$
    2     Segment$
Parameter:     6      Instance:   1  Value:              -1.0000$
)"},
};

TEST(Parameters, asks_and_writes)
{
    for (const SectionCase& row : parameters) {
        check(row);
    }
}

const SectionCase constants[] = {
    {"no types", 10, "GNUMCONST() = -1", "GNUMCONST() 10", R"(
    0               Number of Constants$
)"},
    {"1 or more is in use; descriptions are trimmed over 60 characters and shown by 40", 10,
     R"(GNUMCONST() = 2
        GCONSTTYPEISC(1) = 9
        GCONSTTYPEISC(2) = 100000
        GNUMCONSTBYISC(9) = 6
        GNUMCONSTBYISC(100000) = -1
        GCONSTISUSED(9) = 1
        GCONSTISUSED(9,2) = 0
        GCONSTISUSED(9,3) = 2
        GCONSTVALUEBYISC(9,1) = 1.5
        GCONSTVALUEBYISC(9,3) = -12345675
        GCONSTDESCBYISC(9,1) = "tenletters"
        GCONSTDESCBYISC(9,3) = 'tenletters\0'
        GCONSTDESCBYISC(9,4) = -
        GCONSTDESCBYISC(9,5) = "123456789012345678901234567890123456789012345678901234567890"
        GCONSTDESCBYISC(9,6) = "123456789012345678901234567890123456789")",
     R"(GNUMCONST() 10
        GCONSTTYPEISC(1) 14 GNUMCONSTBYISC(9) 15 GCONSTISUSED(9,1) 13 GCONSTISUSED(9,2) 13 GCONSTISUSED(9,3) 13
        GCONSTISUSED(9,4) 13 GCONSTISUSED(9,5) 13 GCONSTISUSED(9,6) 13 GCONSTTYPEISC(2) 14 GNUMCONSTBYISC(100000) 15
        GCONSTTYPEISC(1) 14 GNUMCONSTBYISC(9) 15
        GCONSTISUSED(9,1) 13 GCONSTVALUEBYISC(9,1) 17 GCONSTDESCBYISC(9,1) 16 60 GCONSTISUSED(9,2) 13
        GCONSTISUSED(9,3) 13 GCONSTVALUEBYISC(9,3) 17 GCONSTDESCBYISC(9,3) 16 60
        GCONSTISUSED(9,4) 13 GCONSTVALUEBYISC(9,4) 17 GCONSTDESCBYISC(9,4) 16 60
        GCONSTISUSED(9,5) 13 GCONSTVALUEBYISC(9,5) 17 GCONSTDESCBYISC(9,5) 16 60
        GCONSTISUSED(9,6) 13 GCONSTVALUEBYISC(9,6) 17 GCONSTDESCBYISC(9,6) 16 60
        GCONSTTYPEISC(2) 14 GNUMCONSTBYISC(100000) 15)",
     R"(
    5               Number of Constants$
ISC #:     9 Instance:     1 Value:               1.5000  Desc: tenletters{NUL}{29 blanks}$
ISC #:     9 Instance:     3 Value:       -12345680.0000  Desc: tenletters{30 NUL}$
ISC #:     9 Instance:     4 Value:               0.0000  Desc: {40 NUL}$
ISC #:     9 Instance:     5 Value:               0.0000  Desc: 1234567890123456789012345678901234567890$
ISC #:     9 Instance:     6 Value:               0.0000  Desc: 123456789012345678901234567890123456789{NUL}$
)"},
    {"the passes disagree; what the host does not fill counts again", 10,
     R"(GNUMCONST() = 1
        GCONSTTYPEISC(1) = 9 / 100000
        GNUMCONSTBYISC = 2
        GCONSTISUSED(9) = 0
        GCONSTISUSED(100000,1) = 1
        GCONSTISUSED(100000,2) = -
        GCONSTVALUEBYISC(100000,1) = 2
        GCONSTVALUEBYISC(100000,2) = -)",
     "", R"(
    0               Number of Constants$
ISC #: ***** Instance:     1 Value:               2.0000  Desc: {NUL}{39 blanks}$
ISC #: ***** Instance:     2 Value:               2.0000  Desc: {NUL}{39 blanks}$
)"},
};

TEST(Constants, asks_and_writes)
{
    for (const SectionCase& row : constants) {
        check(row);
    }
}

const SectionCase initial_conditions[] = {
    {"no systems", 11, "GNUMSEG() = 3", "", R"(
    0$
    3$
)"},
    {"system names are cut to 15 characters, the NUL among them; rows have the segment's number", 11,
     R"(GNUMSYS() = 2
        GNUMSEG() = 2
        GSYSNAME(1) = "Ammonium" "NH4"
        GSYSNAME(2) = "a name of more than fifteen" ""
        GIFIELD(1) = 3
        GDENSITY(1) = 2.65
        GCMAX(1) = 1000
        GINITC(1,1) = 0.5
        GFDISS(1,1) = 1
        GINITC(1,2) = -0.01
        GFDISS(1,2) = 0)",
     R"(GIFIELD(1) 8 GDENSITY(1) 9 GCMAX(1) 6 GINITC(1,1) 7 GFDISS(1,1) 7 GINITC(1,2) 7 GFDISS(1,2) 7
        GIFIELD(2) 8 GDENSITY(2) 9 GCMAX(2) 6 GINITC(2,1) 7 GFDISS(2,1) 7 GINITC(2,2) 7 GFDISS(2,2) 7)",
     R"(
    2$
    2$
     Initial conditions for system  1 Ammonium{NUL}      $
    3               Solids Transport Field$
     2.650          Solids Density, g/mL$
      1000.0000     Maximum Allowed Concentration$
  Seg   Conc   DissF$
  1  0.500000  1.00000$
  2 -1.000000E-02  0.000000$
     Initial conditions for system  2 a name of more $
    0               Solids Transport Field$
     0.000          Solids Density, g/mL$
         0.0000     Maximum Allowed Concentration$
  Seg   Conc   DissF$
  1  0.000000  0.000000$
  2  0.000000  0.000000$
)"},
    {"no segments", 11, "GNUMSYS() = 1", "GIFIELD(1) 8 GDENSITY(1) 9 GCMAX(1) 6", R"(
    1$
    0$
     Initial conditions for system  1 {NUL}              $
    0               Solids Transport Field$
     0.000          Solids Density, g/mL$
         0.0000     Maximum Allowed Concentration$
  Seg   Conc   DissF$
)"},
};

TEST(InitialConditions, asks_and_writes)
{
    for (const SectionCase& row : initial_conditions) {
        check(row);
    }
}

} // namespace
} // namespace velm
