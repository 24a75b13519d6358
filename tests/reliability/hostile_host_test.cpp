// Hosts that answer what no sound host would, one peculiarity at a time. The plug-in's storage ends at guard pages, so
// that a step too far shows in every build.

#include "Utilities/Export/velm_export/export_to.hpp"
#include "Utilities/Export/velm_export/sections.hpp"
#include "Utilities/IMPORT/import_export.hpp"
#include "tests/support/guarded_storage.hpp"
#include "tests/support/own_call_forms.hpp"
#include "tests/support/scripted_file.hpp"

#include <algorithm>
#include <cfenv>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <locale>
#include <map>
#include <stdexcept>

#include <unistd.h>

namespace velm {
namespace {

namespace fs = std::filesystem;

constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t greatest = std::numeric_limits<std::int32_t>::max();

/// Answers every integer by 1 (so that each loop runs once, and everything is in use), every real by one value, every
/// text by one character from its first place to its last.
class UniformHost {
public:
    std::function<std::int32_t(std::string_view key)> integer = [](std::string_view) { return 1; };
    float real = 0;
    char character = ' ';
    int patience = greatest; ///< requests with one key after which the host complains
    std::string file_name = "model.inp";

    std::map<std::string_view, int> asked;
    int reals = 0;             ///< filled
    std::string last_fragment; ///< of the panel

    void answer(const OwnRequest& request)
    {
        const OrdinaryStorage ordinary;
        const HostKey& key = request.key;
        if (key.name == "PINFOHTML") {
            last_fragment = &request.value<char>(0);
            return;
        }
        if (asked[key.name]++ == patience) {
            throw std::runtime_error("the host has seen enough");
        }
        const std::int32_t* length = request.text_lengths.data();
        for (std::size_t i = 0; i < key.argument_count; ++i) {
            const Argument& argument = key.arguments[i];
            if (argument.kind == Kind::text) {
                std::memset(request.values[i], character, static_cast<std::size_t>(*length++));
            } else if (argument.kind == Kind::integer && argument.direction == Direction::out) {
                request.value<std::int32_t>(i) = integer(key.name);
            } else if (argument.kind != Kind::integer) {
                request.value<float>(i) = real;
                ++reals;
            }
        }
        if (key.name == "GFILENAME") {
            std::strcpy(&request.value<char>(0), file_name.c_str());
        }
    }

    [[nodiscard]] bool saw_completion() const { return last_fragment == "File Export is Complete</span></li>"; }
};

/// Keeps the plug-in's storage ordinary while the file keeps what is written.
class KeptFile final : public OutputFile {
public:
    std::string content;

    void open(const char*) override {}
    void write(const char* bytes, std::size_t size) override
    {
        const OrdinaryStorage ordinary;
        content.append(bytes, size);
    }
    void close() override {}
};

std::string export_for(UniformHost& host)
{
    own_host = [&](const OwnRequest& request) { host.answer(request); };
    testing::internal::CaptureStderr();
    KeptFile file;
    {
        const GuardedStorage guarded;
        export_and_report(file);
        model = {}; // guarded storage goes while it is known
    }
    (void)testing::internal::GetCapturedStderr();
    return file.content;
}

struct CountCase {
    std::string_view count;
    std::string_view item; ///< the key that is asked for each item
    int passes = 1;        ///< times that the loop runs
};

const CountCase counts[] = {
    {"GNUMSYS", "GSYSNAME"},
    {"GNUMSEG", "GSEGNAME"},
    {"GNFIELD", "GNINQ", 2},
    {"GNINQ", "GFLOWFUNCDESC", 2},
    {"GNOQS", "GJQ"},
    {"GNBRKQ", "GNOQFUNC"},
    {"GNRFLD", "GNTEX"},
    {"GNTEX", "GNORS"},
    {"GNORS", "GJRSEG"},
    {"GNOBRKS", "GNORFUNC"},
    {"GNOBC", "GIBC"},
    {"GNOWK", "GIWK"},
    {"GNUMTFTYPE", "GTFISC", 2},
    {"GNUMTIMEFUNC", "GTFISUSED", 2},
    {"GNBRKTF", "GBRKTF"},
    {"GNUMPARAMTYPE", "GPARAMISC", 2},
    {"GNUMPARAMBYISC", "GPARAMISUSED", 3},
    {"GNUMCONST", "GCONSTTYPEISC", 2},
    {"GNUMCONSTBYISC", "GCONSTISUSED", 2},
};

TEST(Count, of_any_size_is_taken_at_its_word)
{
    for (const CountCase& row : counts) {
        for (const std::int32_t count : {least, -1, 0, 1, greatest}) {
            SCOPED_TRACE(std::string(row.count) + " = " + std::to_string(count));
            UniformHost host;
            host.patience = 3000;
            host.integer = [&](std::string_view key) { return key == row.count ? count : 1; };
            const std::string file = export_for(host);
            EXPECT_TRUE(file.ends_with("\r\n"));
            EXPECT_EQ(host.saw_completion(), count != greatest) << host.last_fragment;
            if (count == greatest) {
                EXPECT_NEAR(host.asked[row.item], host.patience, 1);
                EXPECT_NE(host.last_fragment.find("the host has seen enough (EXPORT error"), std::string::npos);
            } else {
                const bool none_means_one = row.count == "GNUMTIMEFUNC";
                EXPECT_EQ(host.asked[row.item], row.passes * (count == 0 && none_means_one ? 1 : std::max(count, 0)));
            }
        }
    }
}

TEST(Count, of_a_series_is_refused_only_when_there_is_no_room)
{
    for (const auto& [count_key, series] : {std::pair{"GNBFP", "GALLBOUNDFUNC"}, std::pair{"GNBWK", "GALLLOADFUNC"}}) {
        for (const std::int32_t count : {least, -1, 0, 1, 100'000, 100'001, greatest}) {
            SCOPED_TRACE(std::string(count_key) + " = " + std::to_string(count));
            UniformHost host;
            host.integer = [&, wanted = count_key](std::string_view key) { return key == wanted ? count : 1; };
            export_for(host);
            const bool has_room = count <= 100'000;
            EXPECT_EQ(host.asked[series], has_room ? 1 : 0);
            EXPECT_EQ(host.saw_completion(), has_room);
        }
    }
}

TEST(Text, without_end_or_blank_fills_its_columns_and_no_more)
{
    UniformHost blank;
    const std::string without = export_for(blank);
    UniformHost full;
    full.character = 'x';
    const std::string with = export_for(full);
    const int system = 5 + 30 + 30 + 30 + 15;
    const int functions = (80 + 30) + 80 + 40 + 40 + 40;
    EXPECT_EQ(std::count(with.begin(), with.end(), 'x') - std::count(without.begin(), without.end(), 'x'),
              system + 40 + functions + 512);
    EXPECT_EQ(std::count(with.begin(), with.end(), '\n'), std::count(without.begin(), without.end(), '\n'));
}

int occurrences(std::string_view text, std::string_view word)
{
    int count = 0;
    for (std::size_t at = text.find(word); at != std::string_view::npos; at = text.find(word, at + word.size())) {
        ++count;
    }
    return count;
}

TEST(Real, that_is_no_number_stands_in_every_record_by_name)
{
    using limits = std::numeric_limits<float>;
    UniformHost sound;
    const std::string zeros = export_for(sound);
    const struct {
        float value;
        const char* word; ///< "" when every field shows something of its own
    } cases[] = {{limits::quiet_NaN(), "NaN"},
                 {std::copysign(limits::quiet_NaN(), -1.F), "NaN"},
                 {limits::signaling_NaN(), "NaN"},
                 {limits::infinity(), "INF"},
                 {-limits::infinity(), "-INF"},
                 {limits::max(), ""},
                 {limits::lowest(), ""},
                 {limits::denorm_min(), ""},
                 {-0.F, ""}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.value);
        UniformHost host;
        host.real = row.value;
        const std::string file = export_for(host);
        EXPECT_TRUE(host.saw_completion());
        EXPECT_EQ(occurrences(file, "\r\n"), occurrences(zeros, "\r\n"));
        if (*row.word != '\0') {
            EXPECT_EQ(occurrences(file, row.word), host.reals);
        }
    }
}

/// Makes the locale, which few machines have, in a folder of the test's.
bool set_comma_locale(const fs::path& folder)
{
    fs::create_directories(folder);
    const std::string make = "localedef -i de_DE -f UTF-8 " + (folder / "de_DE.UTF-8").string() + " >/dev/null 2>&1";
    const int made = std::system(make.c_str()); // NOLINT(cert-env33-c): a test
    setenv("LOCPATH", folder.c_str(), 1);
    return made == 0 && std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr &&
           std::string(std::localeconv()->decimal_point) == ",";
}

std::string file_of_many_reals()
{
    std::string files;
    for (const float value : {0.5F, -1234567.9F, 1.F / 3, 1e-40F, 0.00005F, 99999.95F}) {
        UniformHost host;
        host.real = value;
        host.integer = [](std::string_view key) { return key == "GMODELTYPE" ? 12345 : 1; };
        files += export_for(host);
    }
    return files;
}

TEST(File, is_the_same_in_a_host_with_a_comma_locale)
{
    const std::string plain = file_of_many_reals();
    const fs::path folder = testing::TempDir() + "velm_locale_" + std::to_string(getpid());
    const bool has_locale = set_comma_locale(folder);
    if (has_locale) {
        std::locale::global(std::locale("de_DE.UTF-8"));
        EXPECT_EQ(file_of_many_reals(), plain);
        std::locale::global(std::locale::classic());
        std::setlocale(LC_ALL, "C");
    }
    fs::remove_all(folder);
    if (!has_locale) {
        GTEST_SKIP() << "localedef (package locales) cannot make de_DE.UTF-8 here";
    }
}

TEST(File, is_the_same_whichever_way_the_host_rounds)
{
    const std::string plain = file_of_many_reals();
    for (const int mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        std::fesetround(mode);
        const std::string rounded = file_of_many_reals();
        std::fesetround(FE_TONEAREST);
        EXPECT_EQ(rounded, plain) << mode;
    }
}

TEST(ThousandExports, leave_no_storage_and_no_file_behind)
{
    const fs::path path = testing::TempDir() + "velm_thousand_" + std::to_string(getpid()) + ".inp";
    const auto open_files = [] { return std::distance(fs::directory_iterator("/proc/self/fd"), {}); };
    UniformHost host;
    own_host = [&](const OwnRequest& request) { host.answer(request); };
    std::size_t blocks = 0;
    std::ptrdiff_t files = 0;
    testing::internal::CaptureStderr();
    for (int i = 0; i <= 1000; ++i) {
        // every third fails, for want of a folder or by the host's own fault
        host.file_name = i % 3 == 1 ? "/nowhere/model.inp" : path.string();
        host.patience = i % 3 == 2 ? 1 : greatest;
        host.asked.clear();
        {
            const GuardedStorage guarded;
            importexport();
        }
        if (i == 0) {
            blocks = GuardedStorage::blocks();
            files = open_files();
        }
    }
    EXPECT_GT(blocks, 3U); // tables stay for the next export
    EXPECT_EQ(GuardedStorage::blocks(), blocks);
    EXPECT_EQ(open_files(), files);
    (void)testing::internal::GetCapturedStderr();
    fs::remove(path);
}

} // namespace
} // namespace velm
