// Any file in the place of a model database: a load ends with a model or with a StoreError that says something, and
// leaves the file as it was. A model that it gives can be saved, and is the same when it is loaded again.
//
// The input's first byte says what it is: 'S' begins a database's own bytes, 'R' changes to the rows of a small model
// whose tables check nothing, anything else changes to the bytes of a sound one.

#include "fuzz/fuzz_bytes.hpp"
#include "fuzz/scratch_folder.hpp"
#include "fuzz/store_base.hpp"
#include "model_store/model_store.hpp"

#include <filesystem>
#include <iterator>
#include <string>

using namespace velm;

namespace {

namespace fs = std::filesystem;

/// Runs of bytes put into a sound database: offset, length, bytes. A length of 0 cuts the file there.
std::string patched(FuzzBytes patches)
{
    std::string bytes = sound_database();
    while (!patches.empty()) {
        const std::size_t offset = (patches.number<std::uint16_t>() + 0x10000U * patches.byte()) % bytes.size();
        const std::size_t length = patches.byte() % 32U;
        if (length == 0) {
            bytes.resize(offset == 0 ? 1 : offset);
        }
        const std::string_view run = patches.take(length);
        bytes.replace(offset, std::min(run.size(), bytes.size() - offset), run.substr(0, bytes.size() - offset));
    }
    return bytes;
}

void check_saved_and_loaded(const Model& model)
{
    const fs::path copy = scratch_folder() / "copy.db";
    save_model(model, copy);
    expect(load_model(copy) == model, "a model that was loaded is the same when saved and loaded again");
    fs::remove(copy);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string_view input(reinterpret_cast<const char*>(bytes), size);
    const fs::path file = scratch_folder() / "model.db";
    const FuzzBytes rest(bytes + (size == 0 ? 0 : 1), size == 0 ? 0 : size - 1);
    const std::string database = input.starts_with('S')   ? std::string(input)
                                 : input.starts_with('R') ? database_with_rows(rest)
                                                          : patched(rest);
    write_file(file, database);
    LoadOptions options;
    options.quick_check = size % 2 != 0;
    try {
        check_saved_and_loaded(load_model(file, options));
    } catch (const StoreError& error) {
        expect(!error.problems.empty() && *error.what() != '\0', "an error says what is wrong");
        expect(!fs::exists(scratch_folder() / "copy.db"), "what was loaded can be saved");
    }
    expect(content_of(file) == database, "the file is not written to");
    expect(std::distance(fs::directory_iterator(scratch_folder()), {}) == 1, "nothing is left beside it");
    return 0;
}
