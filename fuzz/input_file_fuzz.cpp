// Any bytes in the place of an input file: its reader ends, with a model and problems that have a place. Where it finds
// no problem, an export of the model gives the same bytes.

#include "fuzz/fuzz_bytes.hpp"
#include "fuzz/scratch_folder.hpp"
#include "headless_host/headless_host.hpp"
#include "input_file/input_file.hpp"

#include <sstream>
#include <string>

using namespace velm;

extern "C" void importexport();

namespace {

std::string exported(const Model& model)
{
    const std::filesystem::path path = scratch_folder() / "exported.inp";
    HeadlessHost host(model, path.string());
    velm_host_attach(&HeadlessHost::answer, &host);
    importexport();
    velm_host_attach(nullptr, nullptr);
    expect(host.export_completed() && host.fault_count() == 0, "a model without problems is exported");
    return content_of(path);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(bytes), size);
    std::istringstream input(text);
    const InputFile file = read_input_file(input);
    expect(file.whole || file.problem_count != 0, "what is not whole has a problem");
    for (const Finding& problem : file.problems) {
        expect(problem.place.line > 0 && problem.place.column > 0, "a problem has a place");
        expect(!in_words(problem).empty(), "a problem has words");
    }
    if (file.problem_count == 0) {
        expect(file.bytes == size, "a file is read to its end");
        expect(exported(file.model) == text, "an export gives the same bytes");
    }
    return 0;
}
