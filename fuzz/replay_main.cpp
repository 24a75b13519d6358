// Runs every file in the folders (or files) named through a target, as the fuzzer would: what was found once stays
// found. Works with any compiler.

#include "fuzz/fuzz_bytes.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace fs = std::filesystem;

int main(int count, char** arguments)
{
    std::vector<fs::path> files;
    for (const std::string& name : std::vector<std::string>(arguments + 1, arguments + count)) {
        if (fs::is_directory(name)) {
            std::copy(fs::directory_iterator(name), {}, std::back_inserter(files));
        } else {
            files.emplace_back(name);
        }
    }
    std::sort(files.begin(), files.end());
    for (const fs::path& file : files) {
        (void)std::printf("%s\n", file.c_str());
        (void)std::fflush(stdout); // a file that ends the process is the last one named
        std::ifstream stream(file, std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(stream), {});
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    return files.empty() ? 1 : 0;
}
