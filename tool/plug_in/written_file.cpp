#include "tool/plug_in/written_file.hpp"

#include <algorithm>
#include <fstream>
#include <string>
#include <string_view>

namespace velm {
namespace {

constexpr std::uint64_t sections_of_an_input_file = 11;

/// How many of the lines open a section: the banner of one begins with a blank; those inside the parameter section do
/// not.
std::uint64_t sections_in(std::string_view lines)
{
    std::uint64_t sections = 0;
    for (std::size_t place = lines.find('='); place != std::string_view::npos; place = lines.find('=', place)) {
        const std::size_t begin = lines.rfind('\n', place) + 1; // of all lines when there is none before
        place = lines.find('\n', place);
        const std::string_view line = lines.substr(begin, place - begin);
        sections +=
            line.starts_with(" ======================== ") && line.ends_with(" ===================================\r")
                ? 1
                : 0;
    }
    return sections;
}

} // namespace

std::string WrittenFile::incompleteness() const
{
    if (!readable) {
        return "the plug-in announced completion but its file cannot be read back";
    }
    if (sections < sections_of_an_input_file) {
        return "the plug-in announced completion but wrote " + std::to_string(sections) + " of " +
               std::to_string(sections_of_an_input_file) + " sections";
    }
    return ends_in_line ? "" : "the plug-in announced completion but the last record has no end";
}

std::string still(const FileName& output)
{
    std::error_code unknown;
    return output + (std::filesystem::exists(output.text(), unknown) ? " is as it was" : " is not written");
}

WrittenFile read_written_file(const std::filesystem::path& file)
{
    constexpr std::size_t block = 256 * 1024;
    WrittenFile result;
    std::ifstream input(file, std::ios::binary);
    std::string read; // from the beginning of a line
    while (input) {
        const std::size_t kept = read.size();
        read.resize(kept + block);
        input.read(read.data() + kept, block);
        read.resize(kept + static_cast<std::size_t>(input.gcount()));
        result.bytes += static_cast<std::uint64_t>(input.gcount());
        const std::string_view lines = std::string_view(read).substr(0, read.rfind('\n') + 1);
        result.records += static_cast<std::uint64_t>(std::count(lines.begin(), lines.end(), '\n'));
        result.sections += sections_in(lines);
        result.has_asterisks = result.has_asterisks || read.find('*') != std::string::npos;
        read.erase(0, lines.size());
    }
    result.ends_in_line = read.empty();
    result.readable = input.eof();
    return result;
}

} // namespace velm
