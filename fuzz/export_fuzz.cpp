// The plug-in under a host whose every answer comes from the input, and on a file that may fail. Whatever they do, the
// contract of the call forms is kept, the export ends in one of its two ways, and the next export of the same process
// is right.

#include "Utilities/Export/velm_export/export_to.hpp"
#include "Utilities/Export/velm_export/sections.hpp"
#include "Utilities/IMPORT/import_export.hpp"
#include "fuzz/fuzz_bytes.hpp"
#include "tests/support/own_call_forms.hpp"

#include <iterator>
#include <limits>
#include <stdexcept>
#include <string>

using namespace velm;

namespace {

constexpr std::string_view completion = "File Export is Complete</span></li>";
constexpr int most_requests = 3000; // a host that has seen enough ends the experiment

class FuzzedFile final : public OutputFile {
public:
    int operations_until_failure = 0; ///< 0: it does not fail
    std::string content;
    bool is_open = false;
    bool failed = false;
    bool closed = false;

    void open(const char* path) override
    {
        expect(!is_open && !closed && !failed && *path != '\0', "a file is opened once, and has a name");
        operate("OPEN");
        is_open = true;
    }
    void write(const char* bytes, std::size_t size) override
    {
        expect(is_open && !failed && size != 0, "blocks go to an open file that has not failed");
        operate("WRITE");
        content.append(bytes, size);
    }
    void close() override
    {
        expect(is_open && !failed, "a file is closed once");
        is_open = false;
        operate("CLOSE");
        closed = true;
    }

private:
    void operate(const char* operation)
    {
        if (operations_until_failure != 0 && --operations_until_failure == 0) {
            failed = true;
            throw ExportFailure(operation, "no space left");
        }
    }
};

class FuzzedHost {
public:
    FuzzedHost(FuzzBytes input, const FuzzedFile& file) : input_(input), file_(file)
    {
        const std::uint8_t habits = input_.byte();
        spoils_ = (habits & 1U) != 0;
        asks_back_ = (habits & 2U) != 0;
        requests_until_throw_ = (habits & 4U) != 0 ? 1 + input_.number<std::uint16_t>() % most_requests : most_requests;
    }

    std::string last_fragment;
    std::size_t requests_after_failure = 0;
    bool has_thrown = false;

    void answer(const OwnRequest& request)
    {
        const HostKey& key = request.key;
        const std::int32_t* text_length = request.text_lengths.data();
        if (key.name == "PINFOHTML") {
            last_fragment.assign(&request.value<char>(0), static_cast<std::size_t>(*text_length));
            expect(last_fragment.ends_with('\0'), "a fragment ends with NUL");
            last_fragment.pop_back();
        }
        requests_after_failure += file_.failed ? 1 : 0;
        if (--requests_until_throw_ == 0) {
            has_thrown = true;
            throw_something();
        }
        for (std::size_t i = 0; i < key.argument_count; ++i) {
            const Argument& argument = key.arguments[i];
            if (argument.direction == Direction::out) {
                fill(key, argument, request.values[i], argument.kind == Kind::text ? *text_length++ : 0);
            } else if (spoils_ && argument.kind == Kind::integer) {
                request.value<std::int32_t>(i) = input_.number<std::int32_t>();
            }
        }
        if (asks_back_ && key.name == "GNUMSEG") {
            asks_back_ = false;
            importexport(); // refused: another is under way
        }
    }

private:
    [[noreturn]] void throw_something()
    {
        switch (input_.byte() % 3) {
        case 0: throw std::runtime_error(std::string(input_.take(input_.byte() * std::size_t{3})));
        case 1: throw std::bad_alloc();
        default: throw 7; // NOLINT(hicpp-exception-baseclass): hosts throw what they like
        }
    }

    void fill(const HostKey& key, const Argument& argument, void* value, std::int32_t text_length)
    {
        switch (argument.kind) {
        case Kind::integer: {
            const std::int32_t number = integer();
            std::memcpy(value, &number, sizeof number);
            pairs_ = key.name == "GNBFP" || key.name == "GNBWK" ? number : pairs_;
            break;
        }
        case Kind::real: *static_cast<float*>(value) = input_.number<float>(); break;
        case Kind::text:
            fill_text(static_cast<char*>(value), static_cast<std::size_t>(text_length));
            if (key.name == "GFILENAME" && input_.byte() < 0xf0) {
                std::memcpy(value, "model.inp", 10); // with its NUL
            }
            break;
        case Kind::series: fill_series(static_cast<float*>(value)); break;
        }
    }

    std::int32_t integer()
    {
        constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
        constexpr std::int32_t greatest = std::numeric_limits<std::int32_t>::max();
        constexpr std::int32_t borders[] = {least, -1, 100'000, 100'001, greatest, 99'999, 9'999, 1'001};
        const std::uint8_t choice = input_.byte();
        if (choice < 0x80) {
            return choice % 8;
        }
        return choice < 0xf0 ? borders[choice % std::size(borders)] : input_.number<std::int32_t>();
    }

    void fill_text(char* field, std::size_t length)
    {
        const std::uint8_t choice = input_.byte();
        const std::string_view text = input_.take(choice % 8U == 0 ? length : choice);
        const std::size_t size = std::min(text.size(), length);
        std::memcpy(field, text.data(), size);
        if (choice % 2 == 0) {
            std::memset(field + size, ' ', length - size);
        }
    }

    /// As many entries as the host has announced, which the plug-in has room for or does not ask.
    void fill_series(float* entries)
    {
        expect(pairs_ <= 100'000, "a series is asked for only when it has room");
        if (pairs_ > 0) {
            std::fill_n(entries, pairs_, input_.number<float>());
        }
        for (std::int32_t i = 0; i < std::min(pairs_, 5); ++i) {
            entries[i] = input_.number<float>();
        }
    }

    FuzzBytes input_;
    const FuzzedFile& file_;
    bool spoils_ = false;
    bool asks_back_ = false;
    int requests_until_throw_ = 0;
    std::int32_t pairs_ = 0;
};

std::string export_for(FuzzBytes answers, int operations_until_failure)
{
    FuzzedFile file;
    file.operations_until_failure = operations_until_failure;
    FuzzedHost fuzzed(answers, file);
    own_host = [&](const OwnRequest& request) { fuzzed.answer(request); };
    export_and_report(file);
    if (fuzzed.last_fragment == completion) {
        expect(file.closed && !file.failed, "completion is announced when the file is closed and whole");
    } else {
        expect(!file.closed || fuzzed.has_thrown, "an export that closes its file announces completion");
        expect(fuzzed.last_fragment.starts_with("File Export failed: ") || fuzzed.has_thrown, "a failure is announced");
        expect(fuzzed.requests_after_failure <= 2, "after the file's failure the host hears of it, and no more");
    }
    expect(file.content.empty() || file.content.ends_with("\r\n"), "records are whole");
    return file.content;
}

/// A model without anything, exported as in a fresh process.
const std::string& sound_content()
{
    static const std::string content = export_for({nullptr, 0}, 0);
    return content;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string& sound = sound_content();
    model = {}; // what a host leaves alone keeps what it held; each input starts as in a fresh process
    FuzzBytes input(bytes, size);
    const int operations_until_failure = input.byte() % 8;
    export_for(input, operations_until_failure);
    expect(export_for({nullptr, 0}, 0) == sound, "the next export is right");
    return 0;
}
