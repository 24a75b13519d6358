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

} // namespace
} // namespace velm
