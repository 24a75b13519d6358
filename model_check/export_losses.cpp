#include "model_check/export_losses.hpp"

#include "model_check/read_back.hpp"

#include <fstream>
#include <sstream>
#include <string>

namespace velm {

namespace {

/// The lines of the first bytes of a file.
std::string beginning_of(std::istream& file)
{
    std::string beginning(sampled_bytes, '\0');
    file.read(beginning.data(), static_cast<std::streamsize>(beginning.size()));
    beginning.resize(static_cast<std::size_t>(file.gcount()));
    beginning.resize(beginning.rfind('\n') + 1);
    return beginning;
}

} // namespace

ExportLosses losses_of_export(Model& model, const std::filesystem::path& file, bool read_whole)
{
    constexpr std::size_t most_listed = 10;
    ExportLosses result;
    FindingList list(result.found, most_listed);
    std::ifstream input(file, std::ios::binary);
    result.whole = read_whole || std::filesystem::file_size(file) <= sampled_bytes;
    std::istringstream beginning(result.whole ? std::string() : beginning_of(input));
    const ReadBack found = read_back(result.whole ? static_cast<std::istream&>(input) : beginning, model, list);
    add_losses(list, found.losses);
    result.reals = found.losses.reals;
    return result;
}

} // namespace velm
