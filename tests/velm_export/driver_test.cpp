#include "tests/velm_export/one_export.hpp"

#include <algorithm>

namespace velm {
namespace {

namespace fs = std::filesystem;

const std::string opening = "<li><span style=\"font-weight: bold; color: blue;\">";
const std::string completion = "File Export is Complete</span></li>";

/// A little of everything that loops.
const char* const small_model = R"(
    GNUMSYS() = 1; GSYSNAME(1) = "Ammonia" "NH4"; GNUMSEG() = 2; GIQOPT = 3
    GNFIELD() = 2; GHYDROFILE() = "flow.hyd"; GNINQ = 2; GNOQS = 2; GFLOWFUNCDESC = "River"; GNBRKQ = 2
    GNRFLD() = 2; GNTEX = 2; GEXCHANGEFUNCDESC = "Mixing"; GNORS = 2; GNOBRKS = 2
    GNOBC = 2; GNBFP = 2; GALLBOUNDFUNC = 0,1 2,3
    GLOPT() = 1; GNPSFILE() = "nps.dat"; GNOWK = 2; GNBWK = 2; GALLLOADFUNC = 0,1 2,3
    GNUMTFTYPE() = 2; GTFISC(1) = 11; GTFISC(2) = 12; GNUMTIMEFUNC = 2; GTFISUSED = 1; GTFDESC = "Wind"; GNBRKTF = 2
    GNUMPARAMTYPE() = 2; GPARAMISC(1) = 21; GPARAMISC(2) = 22; GNUMPARAMBYISC = 2; GPARAMISUSED = 1
    GDESCPARAM = "Shade"
    GNUMCONST() = 2; GCONSTTYPEISC(1) = 31; GCONSTTYPEISC(2) = 32; GNUMCONSTBYISC = 2; GCONSTISUSED = 1
    GCONSTDESCBYISC = "Rate"
)";

/// Whether this process has the file open.
bool is_open(const fs::path& path)
{
    return std::ranges::any_of(fs::directory_iterator("/proc/self/fd"), [&](const fs::directory_entry& descriptor) {
        std::error_code gone;
        return fs::equivalent(descriptor.path(), path, gone);
    });
}

TEST(Export, tells_the_panel_its_version_then_ten_sections_then_completion)
{
    const TestFolder folder;
    ScriptedHost host("", folder.path / "model.inp");
    run_export(host);
    const std::size_t version_lengths[version_fragments] = {76, 51, 60, 37, 50, 49, 31, 59, 31, 11, 49, 51, 59,
                                                            31, 59, 31, 59, 31, 59, 31, 59, 31, 59, 31, 47};
    const char* const announcements[] = {"System Information is being Exported",
                                         "Segment Information is being Exported",
                                         "Flow Paths are being Exported",
                                         "Flows are being Exported",
                                         "Dispersive Exchanges are being Exported",
                                         "Loadings are being Exported",
                                         "Time Functions are being Exported",
                                         "Parameter Values are being Exported",
                                         "Constants are being Exported",
                                         "Initial concentrations are being Exported",
                                         "File Export is Complete"};
    ASSERT_EQ(host.fragments.size(), version_fragments + announcing_fragments + 2);
    for (std::size_t i = 0; i < version_fragments; ++i) {
        EXPECT_EQ(host.fragments[i].size(), version_lengths[i]) << "fragment " << i + 1;
    }
    auto fragment = host.fragments.begin() + version_fragments;
    for (const char* announcement : announcements) {
        EXPECT_EQ(*fragment++, opening + '\0');
        EXPECT_EQ(*fragment++, announcement + std::string("</span></li>") + '\0');
    }
}

TEST(Export, opens_the_file_after_the_version_panel_and_closes_it_before_completion)
{
    const TestFolder folder;
    const fs::path path = folder.path / "model.inp";
    std::ofstream(path) << std::string(1'000'000, 'o'); // an older and longer file
    ScriptedHost host(small_model, path);
    std::string at_completion;
    host.on_request = [&](const std::string& request) {
        const std::size_t fragments = host.fragments.size();
        const bool before = fragments <= version_fragments;
        const bool after = fragments > version_fragments + announcing_fragments;
        EXPECT_EQ(is_open(path), !before && !after) << request;
        EXPECT_EQ(fs::file_size(path) == 1'000'000, before) << request;
        if (request == completion) {
            at_completion = content_of(path);
        }
    };
    run_export(host);
    EXPECT_EQ(host.requests.front(), "GFILENAME() 10 512");
    EXPECT_EQ(host.fragments_before[0], 0U);
    EXPECT_EQ(host.fragments.back().c_str(), completion);
    EXPECT_EQ(at_completion, content_of(path));
    EXPECT_EQ(at_completion.substr(at_completion.size() - 2), "\r\n");
}

TEST(Export, finds_the_file_name_in_its_field)
{
    const TestFolder folder;
    const fs::path path = folder.path / "model.inp";
    std::string full = folder.path.string() + '/';
    while (full.size() < 512 - 10) {
        full += "./";
    }
    full += std::string(512 - full.size() - 9, '/') + "model.inp";
    const std::string name = path.string();
    const std::string answers[] = {"\"" + name, "'" + name + "\\0/nowhere/", "\"" + name + "\\0junk", "\"" + full};
    for (const std::string& answer : answers) {
        fs::remove(path);
        ScriptedHost host("GFILENAME() = " + answer, "");
        run_export(host);
        EXPECT_GT(content_of(path).size(), 1000U) << answer;
    }
}

TEST(Export, gives_the_same_file_again_whatever_was_exported_between)
{
    const TestFolder folder;
    std::string contents[4];
    const char* const scripts[4] = {small_model, "", small_model, "GNUMSYS() = -1"};
    for (std::size_t i = 0; i < 4; ++i) {
        ScriptedHost host(scripts[i], folder.path / "model.inp");
        run_export(host);
        contents[i] = content_of(folder.path / "model.inp");
    }
    EXPECT_EQ(contents[0], contents[2]);
    EXPECT_GT(contents[0].size(), contents[1].size());
    EXPECT_EQ(contents[3].size(), contents[1].size());
}

TEST(Export, does_not_depend_on_index_arguments_that_the_host_overwrites)
{
    const TestFolder folder;
    ScriptedHost host(small_model, folder.path / "sound.inp");
    run_export(host);
    ScriptedHost spoiling(small_model, folder.path / "spoilt.inp");
    spoiling.spoils_indices = true;
    run_export(spoiling);
    EXPECT_EQ(spoiling.requests, host.requests);
    EXPECT_EQ(content_of(folder.path / "spoilt.inp"), content_of(folder.path / "sound.inp"));
}

/// Texts that are not cleared keep what the host leaves alone, also of an earlier export.
TEST(Export, leaves_uncleared_texts_to_the_host)
{
    const TestFolder folder;
    ScriptedHost first(small_model, folder.path / "model.inp");
    run_export(first);
    ScriptedHost second(R"(GFILENAME() = -; GNUMSEG() = 1; GIQOPT = 3
        GNFIELD() = 1; GHYDROFILE() = 'F'; GNINQ = 1; GFLOWFUNCDESC = 'Q' / -
        GNRFLD() = 1; GNTEX = 1; GEXCHANGEFUNCDESC = 'exch'; GLOPT() = 1; GNPSFILE() = 'N')",
                        "");
    run_export(second);
    const std::string file = content_of(folder.path / "model.inp");
    const std::string parts[] = {
        "\r\n Flow.hyd" + std::string(504, ' ') + "\r\n",
        // the time functions of the first export were the last to clear this field, and named it "Wind"
        "\r\n Qind" + std::string(76, ' ') + "\r\n",
        "\r\nQind" + std::string(26, ' ') + "\r\n",
        "\r\n exch" + std::string(76, ' ') + "\r\n",
        "\r\nNps.dat" + std::string(505, ' ') + "\r\n",
    };
    for (const std::string& part : parts) {
        EXPECT_NE(file.find(part), std::string::npos) << part;
    }
}

TEST(Export, takes_as_many_types_and_functions_as_the_host_reports)
{
    const TestFolder folder;
    ScriptedHost host(R"(GNFIELD() = 1; GNINQ(1) = 301; GFLOWFUNCDESC(1,301) = "the last function"
        GNUMTFTYPE() = 1001; GTFISC(1001) = 991; GTFISUSED(991,1) = 1; GTFDESC(991,1) = "the last time function"
        GNUMPARAMTYPE() = 1002; GPARAMISC(1002) = 992; GNUMPARAMBYISC(992) = 1; GPARAMISUSED(992,1) = 1
        GDESCPARAM(992,1) = "the last parameter"
        GNUMCONST() = 1003; GCONSTTYPEISC(1003) = 993; GNUMCONSTBYISC(993) = 1; GCONSTISUSED(993,1) = 1
        GCONSTDESCBYISC(993,1) = "the last constant")",
                      folder.path / "model.inp");
    run_export(host);
    EXPECT_EQ(host.fragments.back().c_str(), completion);
    const std::string file = content_of(folder.path / "model.inp");
    for (const char* last : {" the last function ", "     991       1     the last time function ",
                             "ISC #:   992 Instance:   1 Scale:     0.0000 Description:the last parameter ",
                             "ISC #:   993 Instance:     1 Value:               0.0000  Desc: the last constant"}) {
        EXPECT_NE(file.find(std::string("\r\n") + last), std::string::npos) << last;
    }
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
    {"a device without space", "GFILENAME() = \"/dev/full", "No space left on device", "WRITE", "", false},
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
        if (*row.last_request != '\0') {
            EXPECT_EQ(host.requests.back(), row.last_request);
        }
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

TEST(Export, takes_100000_pairs_and_writes_them_all)
{
    const TestFolder folder;
    std::ptrdiff_t lines[2] = {};
    for (const int i : {0, 1}) {
        const char* const pairs[] = {"0", "100000"};
        ScriptedHost host(std::string("GNUMSYS() = 1; GNOBC(1) = 1; GNBFP(1,1) = ") + pairs[i],
                          folder.path / "model.inp");
        run_export(host);
        EXPECT_EQ(host.fragments.back().c_str(), completion);
        const std::string file = content_of(folder.path / "model.inp");
        lines[i] = std::ranges::count(file, '\n');
    }
    EXPECT_EQ(lines[1] - lines[0], 100'000);
}

} // namespace
} // namespace velm
