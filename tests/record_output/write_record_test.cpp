#include "record_output/write_record.hpp"

#include "tests/support/scripted_file.hpp"

#include <gtest/gtest.h>

namespace velm {
namespace {

using namespace std::string_view_literals;

constexpr std::int32_t least = -2'147'483'648;

struct RecordCase {
    const char* special;
    void (*write)(OutputChannel& out);
    std::string_view line; ///< without its CR LF
};

const RecordCase records[] = {
    {"a count and its label", [](OutputChannel& out) { write_record<"(I5,15x,'Number of Segments')">(out, 12); },
     "   12               Number of Segments"},
    {"integers at the edges of their columns",
     [](OutputChannel& out) { write_record<"(4(I5),2I3,I2)">(out, 99999, 100000, -9999, -10000, 999, 1000, 0); },
     "99999*****-9999*****999*** 0"},
    {"the least integer, where it fits and where not",
     [](OutputChannel& out) { write_record<"(I11,I10)">(out, least, least); }, "-2147483648**********"},
    {"reals next to one another",
     [](OutputChannel& out) { write_record<"(F8.6,1x,F6.3,2f14.6)">(out, 0.1F, 1.5F, -1.0F, 1e7F); },
     "0.100000  1.500     -1.000000**************"},
    {"groups within groups", [](OutputChannel& out) { write_record<"(2(I2,2(I3)))">(out, 1, 2, 3, 4, 5, 6); },
     " 1  2  3 4  5  6"},
    {"reals of one column, of more than twenty, and with more decimals than columns",
     [](OutputChannel& out) { write_record<"(F1.1,F1.0,F21.4,F2.9)">(out, 0.0F, 0.0F, -123456.79F, 0.5F); },
     "*.         -123456.8000**"},
    {"a text as long as its columns, trailing blanks and NUL included",
     [](OutputChannel& out) { write_record<"(A5,5X,A3)">(out, literal<"ab\0  ">, literal<"xyz">); },
     "ab\0       xyz"sv},
    {"a shorter text stands right, a longer one is cut",
     [](OutputChannel& out) { write_record<"(A8,A2,'|')">(out, literal<"abc">, literal<"  defg">); }, "     abc  |"},
    {"bytes above 127", [](OutputChannel& out) { write_record<"(A3)">(out, literal<"\xff\x80\xe4">); }, "\xff\x80\xe4"},
    {"literals joined without the blanks between them",
     [](OutputChannel& out) { write_record<"('  Seg   Conc',      '   DissF',   '  it''s: (I5),/ ' )">(out); },
     "  Seg   Conc   DissF  it's: (I5),/ "},
    {"literals and blanks behind the last value",
     [](OutputChannel& out) { write_record<"(I5,15x,'NPS Input Option (0=No, 1=Yes)',16x,'LOADFILE')">(out, -1); },
     "   -1               NPS Input Option (0=No, 1=Yes)                LOADFILE"},
    {"a free text has one blank before it, and keeps its own",
     [](OutputChannel& out) { write_free_record(out, literal<"ab \0 ">); }, " ab \0 "sv},
    {"two free texts are joined", [](OutputChannel& out) { write_free_record(out, literal<"ab">, literal<" cd">); },
     " ab cd"},
    {"a text behind a number is separated again",
     [](OutputChannel& out) { write_free_record(out, literal<"a">, 1, literal<"b">, literal<"c">); }, " a  1 bc"},
    {"a text, then a number", [](OutputChannel& out) { write_free_record(out, literal<"    Flow Field ">, 2); },
     "     Flow Field   2"},
    {"free integers", [](OutputChannel& out) { write_free_record(out, 7, -12, 0, least); }, "  7 -12  0 -2147483648"},
    {"free reals of both signs and forms",
     [](OutputChannel& out) { write_free_record(out, 0.0F, 12.5F, -0.5F, -3e12F); },
     "  0.000000  12.5000 -0.500000 -3.000000E+12"},
    {"a negative zero and no number have no sign",
     [](OutputChannel& out) { write_free_record(out, -0.0F, std::bit_cast<float>(0xffc00000U), 1e-45F); },
     "  0.000000  NaN  1.401298E-45"},
    {"two integers, then two reals", [](OutputChannel& out) { write_free_record(out, 3, -4, 2500.0F, 0.05F); },
     "  3 -4  2500.00  5.000000E-02"},
};

TEST(Record, is_written_byte_for_byte)
{
    for (const RecordCase& c : records) {
        ScriptedFile file;
        OutputChannel out(file);
        c.write(out);
        out.close();
        EXPECT_EQ(file.content, std::string(c.line) + "\r\n") << c.special;
    }
}

TEST(OutputChannel, takes_a_record_that_fills_its_buffer_to_the_last_byte)
{
    ScriptedFile file;
    OutputChannel out(file);
    for (const std::size_t size : {OutputChannel::buffer_size, std::size_t{1}, OutputChannel::buffer_size}) {
        char* room = out.room_for(size);
        std::memset(room, 'a', size);
        out.append_up_to(room + size);
    }
    out.close();
    EXPECT_EQ(file.content, std::string(2 * OutputChannel::buffer_size + 1, 'a'));
}

} // namespace
} // namespace velm
