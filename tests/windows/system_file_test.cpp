#include "tests/support/system_file_case.hpp"

#include <vector>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace velm {
namespace {

/// The system's own words, in this process's language; they end in neither a blank nor a line end.
std::string words_for(DWORD error)
{
    char text[256] = {};
    FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error,
                   MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), text, sizeof text, nullptr);
    const std::string words(text);
    return words.substr(0, words.find_last_not_of(" \r\n") + 1);
}

TEST_F(SystemFileTest, says_what_failed_and_why)
{
    ASSERT_FALSE(words_for(ERROR_PATH_NOT_FOUND).empty());
    EXPECT_EQ(outcome((folder / "missing" / "model.inp").string()), "OPEN: " + words_for(ERROR_PATH_NOT_FOUND));
    EXPECT_EQ(outcome(folder.string()), "OPEN: " + words_for(ERROR_ACCESS_DENIED));
    EXPECT_EQ(outcome((folder / "a|b.inp").string()), "OPEN: " + words_for(ERROR_INVALID_NAME));
    EXPECT_EQ(outcome(path.string()), "done");
    EXPECT_EQ(outcome("NUL"), "done");
}

TEST_F(SystemFileTest, tells_a_full_disk)
{
    const std::string full = "Z:\\dev\\full"; // Wine's view of a device that is always full
    EXPECT_EQ(outcome(full), "WRITE: " + words_for(ERROR_DISK_FULL));
    EXPECT_EQ(outcome(full, 5'000'000), "WRITE: " + words_for(ERROR_DISK_FULL));
}

TEST_F(SystemFileTest, replaces_a_longer_file_and_writes_every_byte_as_it_is)
{
    std::ofstream(path) << std::string(100'000, 'o');
    const std::string bytes("one\r\ntwo\nthree\r\x1A four\0\r\n", 24);
    {
        SystemFile file;
        file.open(path.string().c_str());
        file.write(bytes.data(), bytes.size());
        file.close();
    }
    EXPECT_EQ(content(), bytes);
}

TEST_F(SystemFileTest, takes_names_in_the_active_code_page)
{
    std::wstring wide = (folder / L"Gew\u00E4sser.inp").wstring();
    std::vector<char> name(4 * wide.size() + 1);
    WideCharToMultiByte(CP_ACP, 0, wide.c_str(), -1, name.data(), static_cast<int>(name.size()), nullptr, nullptr);
    EXPECT_EQ(outcome(name.data()), "done");
    EXPECT_TRUE(std::filesystem::exists(wide));
}

TEST_F(SystemFileTest, writes_all_of_a_block_larger_than_a_pipe_holds)
{
    const std::string name = "\\\\.\\pipe\\velm_" + std::to_string(GetCurrentProcessId());
    const HANDLE pipe = CreateNamedPipeA(name.c_str(), PIPE_ACCESS_INBOUND, PIPE_WAIT, 1, 4096, 4096, 0, nullptr);
    ASSERT_NE(pipe, INVALID_HANDLE_VALUE);
    struct Reading {
        HANDLE pipe;
        std::size_t bytes;
    } reading{pipe, 0};
    const HANDLE reader = CreateThread(
        nullptr, 0,
        [](void* context) -> DWORD {
            auto& self = *static_cast<Reading*>(context);
            ConnectNamedPipe(self.pipe, nullptr);
            char block[1000];
            for (DWORD got = 0; ReadFile(self.pipe, block, sizeof block, &got, nullptr) != 0; self.bytes += got) {
            }
            return 0;
        },
        &reading, 0, nullptr);
    EXPECT_EQ(outcome(name, 1'000'000), "done");
    WaitForSingleObject(reader, INFINITE);
    EXPECT_EQ(reading.bytes, 1'000'000U);
    CloseHandle(reader);
    CloseHandle(pipe);
}

TEST_F(SystemFileTest, tells_that_the_reader_has_gone)
{
    const std::string name = "\\\\.\\pipe\\velm_gone_" + std::to_string(GetCurrentProcessId());
    const HANDLE pipe = CreateNamedPipeA(name.c_str(), PIPE_ACCESS_INBOUND, PIPE_WAIT, 1, 4096, 4096, 0, nullptr);
    SystemFile file;
    file.open(name.c_str());
    CloseHandle(pipe);
    EXPECT_THROW(file.write("x", 1), ExportFailure);
}

TEST_F(SystemFileTest, can_be_read_and_removed_by_others_while_it_is_written)
{
    SystemFile file;
    file.open(path.string().c_str());
    file.write("half", 4);
    EXPECT_NE(DeleteFileW(path.c_str()), 0);
}

TEST_F(SystemFileTest, lets_go_of_a_file_that_was_not_closed)
{
    {
        SystemFile file;
        file.open(path.string().c_str());
        file.write("half", 4);
    }
    EXPECT_EQ(outcome(path.string(), 5), "done"); // nobody else may write to a file that is open
    EXPECT_EQ(content(), "xxxxx");
}

} // namespace
} // namespace velm
