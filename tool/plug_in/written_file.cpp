#include "tool/plug_in/written_file.hpp"

#include <fstream>
#include <string_view>

namespace velm {
namespace {

constexpr std::uint64_t sections_of_an_input_file = 11;

/// A banner of a section begins with a blank; the banners inside the parameter section do not.
bool opens_section(std::string_view line)
{
    return line.starts_with(" ======================== ") && line.ends_with(" ===================================\r");
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
    WrittenFile result;
    std::ifstream input(file, std::ios::binary);
    for (std::string line; std::getline(input, line);) {
        result.ends_in_line = !input.eof();
        result.records += result.ends_in_line ? 1 : 0;
        result.bytes += line.size() + (result.ends_in_line ? 1 : 0);
        result.lines_with_asterisks += line.find('*') != std::string::npos ? 1 : 0;
        result.sections += opens_section(line) ? 1 : 0;
    }
    result.readable = input.eof();
    return result;
}

} // namespace velm
