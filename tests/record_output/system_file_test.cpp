#include "tests/support/system_file_case.hpp"

#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace velm {
namespace {

TEST_F(SystemFileTest, says_what_failed_and_why)
{
    EXPECT_EQ(outcome(folder / "missing" / "model.inp"), "OPEN: No such file or directory");
    EXPECT_EQ(outcome(folder), "OPEN: Is a directory");
    EXPECT_EQ(outcome(std::string(300, 'n')), "OPEN: File name too long");
    EXPECT_EQ(outcome("/dev/full"), "WRITE: No space left on device");
    EXPECT_EQ(outcome(path), "done");
}

TEST_F(SystemFileTest, says_it_in_the_language_of_no_locale)
{
    (void)std::setlocale(LC_ALL, "");
    EXPECT_EQ(outcome(folder), "OPEN: Is a directory");
    (void)std::setlocale(LC_ALL, "C");
}

TEST_F(SystemFileTest, replaces_a_longer_file)
{
    std::ofstream(path) << std::string(100'000, 'o');
    EXPECT_EQ(outcome(path, 3), "done");
    EXPECT_EQ(content(), "xxx");
}

TEST_F(SystemFileTest, writes_all_of_a_block_larger_than_the_system_takes_at_once)
{
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    std::size_t read = 0;
    std::thread reader([&] { read = content().size(); });
    EXPECT_EQ(outcome(path, 1'000'000), "done");
    reader.join();
    EXPECT_EQ(read, 1'000'000U);
}

TEST_F(SystemFileTest, survives_a_reader_that_has_gone)
{
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const int reader = open(path.c_str(), O_RDONLY | O_NONBLOCK);
    SystemFile file;
    file.open(path.c_str());
    close(reader);
    EXPECT_THROW(file.write("x", 1), ExportFailure); // and the process is still here: no SIGPIPE
    sigset_t pending;
    sigpending(&pending);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);
}

TEST_F(SystemFileTest, survives_a_size_limit_and_keeps_what_fitted)
{
    auto write_beyond_the_limit = [&] {
        rlimit limit{};
        limit.rlim_cur = limit.rlim_max = 1000;
        setrlimit(RLIMIT_FSIZE, &limit);
        _exit(outcome(path, 5000) == "WRITE: File too large" ? 0 : 1);
    };
    EXPECT_EXIT(write_beyond_the_limit(), testing::ExitedWithCode(0), "");
    EXPECT_EQ(content(), std::string(1000, 'x'));
}

TEST_F(SystemFileTest, lets_go_of_a_file_that_was_not_closed)
{
    const int next_free = open("/dev/null", O_RDONLY);
    close(next_free);
    {
        SystemFile file;
        file.open(path.c_str());
        file.write("half", 4);
    }
    const int now_free = open("/dev/null", O_RDONLY);
    close(now_free);
    EXPECT_EQ(now_free, next_free);
    EXPECT_EQ(content(), "half");
}

} // namespace
} // namespace velm
