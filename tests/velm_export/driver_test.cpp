#include "tests/velm_export/one_export.hpp"

#include <algorithm>

namespace velm {
namespace {

namespace fs = std::filesystem;

const std::string completion = "File Export is Complete</span></li>";

/// Whether this process has the file open.
bool is_open(const fs::path& path)
{
    return std::ranges::any_of(fs::directory_iterator("/proc/self/fd"), [&](const fs::directory_entry& descriptor) {
        std::error_code gone;
        return fs::equivalent(descriptor.path(), path, gone);
    });
}

struct RefusalCase {
    const char* special;
    const char* script;
    const char* message;
    const char* operation;
    const char* last_request;
    bool leaves_records;
};

const RefusalCase refusals[] = {
    {"no output file name", "GFILENAME() = \"", "no output file name", "OPEN", "GFILENAME() 10 512", false},
    {"a NUL at its start", "GFILENAME() = \"\\0name", "no output file name", "OPEN", "GFILENAME() 10 512", false},
    {"a folder that is missing", "GFILENAME() = \"/nowhere/model.inp", "No such file or directory", "OPEN",
     "GFILENAME() 10 512", false},
    {"a device without space", "GFILENAME() = \"/dev/full", "No space left on device", "WRITE",
     "GMODELOUTPUTINTERVAL() 21", false}, // the last before the host is told of something
    {"too many pairs in a boundary", "GNUMSYS() = 2; GNOBC(2) = 3; GNBFP(2,3) = 100001",
     "system 2, boundary 3 has 100001 time pairs; at most 100000 can be exported", "EXPORT", "GNBFP(2,3) 6", true},
    {"too many pairs in a load", "GNUMSYS() = 1; GNOWK(1) = 1; GNBWK(1,1) = 2147483647",
     "system 1, load 1 has 2147483647 time pairs; at most 100000 can be exported", "EXPORT", "GNBWK(1,1) 6", true},
};

TEST(Export, says_why_it_stopped_and_asks_nothing_more)
{
    for (const RefusalCase& row : refusals) {
        SCOPED_TRACE(row.special);
        const TestFolder folder;
        ScriptedHost host(row.script, folder.path / "model.inp");
        testing::internal::CaptureStderr();
        run_export(host);
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  std::string("? ") + row.message + "\n? " + row.operation + " error on channel 5\n");
        ASSERT_GE(host.fragments.size(), 27U);
        EXPECT_EQ(*(host.fragments.end() - 2),
                  std::string(R"(<li><span style="font-weight: bold; color: red;">)") + '\0');
        EXPECT_EQ(host.fragments.back(), std::string("File Export failed: ") + row.message + " (" + row.operation +
                                             " error on channel 5)</span></li>" + '\0');
        EXPECT_EQ(host.requests.back(), row.last_request);
        const std::string file = content_of(folder.path / "model.inp");
        EXPECT_EQ(!file.empty(), row.leaves_records);
        if (row.leaves_records) {
            EXPECT_TRUE(file.ends_with("\r\n*****               Number of Time Pairs\r\n")) << file;
        }
        EXPECT_FALSE(fs::exists(folder.path / "model.inp") && is_open(folder.path / "model.inp"));

        ScriptedHost next("", folder.path / "next.inp");
        run_export(next);
        EXPECT_EQ(next.fragments.back().c_str(), completion);
    }
}

/// Where the records stand when the host hears of something: behind the section's banner or, for the progress, behind
/// the last system.
TEST(Export, has_its_records_in_the_file_before_it_says_so)
{
    const TestFolder folder;
    const fs::path path = folder.path / "model.inp";
    ScriptedHost host("GNUMSYS() = 1; GSYSNAME(1) = \"Oxygen\" \"DO\"; GNUMSEG() = 2", path);
    std::string ends;
    host.on_request = [&](const std::string& request) {
        if (request.ends_with("Exported</span></li>") || request.starts_with("PPROGRESS")) {
            const std::string written = content_of(path);
            ends += written.empty() ? "nothing" : written.substr(written.rfind('\n', written.size() - 2) + 1, 31);
            ends += '|';
        }
    };
    run_export(host);
    EXPECT_EQ(ends,
              "nothing|DO        Oxygen" + std::string(1, '\0') +
                  "              |"
                  " ======================== Segme| ======================== Flow | ======================== Flow |"
                  " ======================== Segme| ======================== Load | ======================== Time |"
                  " ======================== Segme| ======================== Const| ======================== Initi|");
}

TEST(Export, keeps_what_the_host_leaves_alone_the_next_time)
{
    const std::vector<std::string> keys = {"GMODELTYPE() = 7",
                                           "GSEEDTIME() = 1 2 3",
                                           "GSEEDDATE() = 4 5 6",
                                           "GHYDSKIPDATE() = 7 8 9",
                                           "GHYDSKIPTIME() = 1 2 3",
                                           "GENDJULIAN() = 365.25",
                                           "GNUMSYS() = 1",
                                           "GJMAS() = 21",
                                           "GSOLUTIONTYPE() = 22",
                                           "GNEGSLN() = 23",
                                           "GICRD() = 24",
                                           "GINTYP() = 25",
                                           "GVELMTOVELMLINK() = 26",
                                           "GFRACMAXTS() = 0.5",
                                           "GMAXDT() = 1.5",
                                           "GMINDT() = 0.25",
                                           "GMODELOUTPUTINTERVAL() = 2",
                                           "GNUMSEG() = 1",
                                           "GBEDOPT() = 3",
                                           "GSCALV() = 2",
                                           "GCONVV() = 4",
                                           "GNFIELD() = 1",
                                           "GHYDROFILE() = \"a.hyd",
                                           "GSCALEQ = 8",
                                           "GCONVQ = 9",
                                           "GNRFLD() = 1",
                                           "GSCALER = 3",
                                           "GCONVR = 5",
                                           "GLOPT() = 1",
                                           "GNPSFILE() = \"a.nps",
                                           "GNUMTFTYPE() = 1",
                                           "GNUMPARAMTYPE() = 1"};
    const std::string others =
        "; GIQOPT = 3; GNINQ = 1; GNTEX = 1; GTFISUSED = 1; GNUMPARAMBYISC = 1; GPARAMISUSED = 1";
    const TestFolder folder;
    for (const std::string& key : keys) {
        SCOPED_TRACE(key);
        std::string answered = key;
        std::string left_alone = key.substr(0, key.find('=') + 1) + " - - -";
        for (const std::string& other : keys) {
            answered += "; " + other;
            left_alone += other == key ? "" : "; " + other;
        }
        ScriptedHost first(answered + others, folder.path / "first.inp");
        run_export(first);
        ScriptedHost second(left_alone + others, folder.path / "second.inp");
        run_export(second);
        EXPECT_EQ(content_of(folder.path / "second.inp"), content_of(folder.path / "first.inp"));
    }
}

} // namespace
} // namespace velm
