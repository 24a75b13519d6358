#include "tests/input_file/exported.hpp"

#include "headless_host/headless_host.hpp"
#include "host_link/host_keys.hpp"

#include <algorithm>
#include <functional>
#include <sstream>

#include <gtest/gtest.h>
#include <unistd.h>

extern "C" void importexport();

namespace velm {

namespace fs = std::filesystem;

namespace {

fs::path output_file()
{
    return fs::path(testing::TempDir()) / ("velm-exported-" + std::to_string(getpid()));
}

std::string bytes_of_export(velm_host_answer answer, void* host)
{
    velm_host_attach(answer, host);
    importexport();
    velm_host_attach(nullptr, nullptr);
    std::string bytes = content_of(output_file());
    fs::remove(output_file());
    return bytes;
}

} // namespace

std::string exported(const Model& model)
{
    HeadlessHost host(model, output_file().string());
    std::string bytes = bytes_of_export(&HeadlessHost::answer, &host);
    EXPECT_TRUE(host.export_completed());
    EXPECT_EQ(host.fault_count(), 0U) << host.faults().front();
    return bytes;
}

InputFile read_text(const std::string& bytes, const ReadOptions& options)
{
    std::istringstream input(bytes);
    return read_input_file(input, options);
}

std::string problems_of(const InputFile& file)
{
    std::string lines;
    for (const Finding& problem : file.problems) {
        lines += "file:" + std::to_string(problem.place.line) + ':' + std::to_string(problem.place.column) + ": " +
                 place_in_words(problem) + ": " + problem.message + '\n';
    }
    return lines;
}

std::vector<fs::path> golden_files()
{
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(VELM_GOLDEN_FILES)) {
        if (entry.path().extension() == ".inp") {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

namespace {

/// Answers each question at random, and alike whenever it is asked: existing segments, each type with an ISC number of
/// its own, numbers that their fields hold, any bytes in texts.
class RandomHost {
public:
    RandomHost(std::mt19937::result_type seed, std::string file) : seed_(seed), file_(std::move(file)) {}

    static void answer(void* host, const velm_host_request* request)
    {
        static_cast<RandomHost*>(host)->serve(*request);
    }

private:
    void serve(const velm_host_request& request)
    {
        const HostKey& key = host_keys[request.key_position];
        std::string question(key.name);
        std::int32_t last_index = 0;
        for (std::size_t i = 0; i < key.argument_count; ++i) {
            if (key.arguments[i].direction == Direction::in && key.arguments[i].kind == Kind::integer) {
                last_index = *static_cast<const std::int32_t*>(request.values[i]);
                question += ' ' + std::to_string(last_index);
            }
        }
        const std::int32_t* text_length = request.text_lengths;
        for (std::size_t i = 0; i < key.argument_count; ++i) {
            const auto& [kind, direction, length, meaning] = key.arguments[i];
            if (direction == Direction::in) {
                continue;
            }
            begin(question + " " + std::string(meaning));
            switch (kind) {
            case Kind::integer:
                *static_cast<std::int32_t*>(request.values[i]) = integer(key, meaning, last_index);
                break;
            case Kind::real: *static_cast<float*>(request.values[i]) = real(key); break;
            case Kind::text: fill_text(static_cast<char*>(request.values[i]), *text_length++); break;
            case Kind::series:
                std::generate_n(static_cast<float*>(request.values[i]), most_pairs, [&] { return real(key); });
            }
        }
        if (key.name == "GFILENAME") {
            std::ranges::copy(file_ + '\0', static_cast<char*>(request.values[0]));
        }
    }

    void begin(const std::string& question)
    {
        random_.seed(seed_ + static_cast<std::mt19937::result_type>(std::hash<std::string>{}(question)));
    }
    std::int32_t pick(std::int32_t least, std::int32_t most)
    {
        return std::uniform_int_distribution<std::int32_t>(least, most)(random_);
    }

    std::int32_t integer(const HostKey& key, std::string_view meaning, std::int32_t last_index)
    {
        if (meaning.starts_with("number of")) {
            const bool needs_segments = key.name == "GNOBC" || key.name == "GNOWK";
            return needs_segments && segments() == 0 ? 0 : std::max(0, pick(-2, most_pairs));
        }
        if (meaning == "ISC number") {
            begin(std::string(key.name));
            return pick(-90, 900) + last_index;
        }
        if (meaning.ends_with(" segment")) {
            return pick(meaning == "boundary segment" || meaning == "load segment" ? 1 : 0, segments());
        }
        return meaning == "used flag" ? pick(0, 1) : meaning == "flow option" ? pick(2, 3) : pick(-999, 9999);
    }

    std::int32_t segments()
    {
        const std::mt19937 kept = random_;
        begin("GNUMSEG number of segments");
        const std::int32_t count = std::max(0, pick(-2, most_pairs));
        random_ = kept;
        return count;
    }

    float real(const HostKey& key)
    {
        constexpr std::string_view in_rows = "GNOQFUNC GNORFUNC GXAREA GLENGTH GALLBOUNDFUNC GINITC GFDISS";
        if (in_rows.find(key.name) != std::string_view::npos) {
            return static_cast<float>(pick(-999'999, 999'999) * (pick(0, 1) == 0 ? 1e-34 : 1e-3));
        }
        const bool narrow = key.name == "GMINDT" || key.name == "GMAXDT";
        return narrow ? static_cast<float>(pick(0, 9999)) / 1000.0F : static_cast<float>(pick(-9999, 9999)) / 100.0F;
    }

    void fill_text(char* field, std::int32_t length)
    {
        const std::string_view alphabet =
            pick(0, 2) == 0 ? std::string_view("ab \0\r\n\xFF", 7) : "Reach of the r\xEDo ";
        char* const end = std::generate_n(field, pick(0, length), [&] {
            return alphabet[static_cast<std::size_t>(pick(0, static_cast<int>(alphabet.size()) - 1))];
        });
        std::fill(end, field + length, ' ');
    }

    static constexpr std::int32_t most_pairs = 5; ///< and most items of every other kind

    std::mt19937::result_type seed_;
    std::string file_;
    std::mt19937 random_;
};

} // namespace

std::string random_file(std::mt19937& random)
{
    RandomHost host(random(), output_file().string());
    return bytes_of_export(&RandomHost::answer, &host);
}

} // namespace velm
