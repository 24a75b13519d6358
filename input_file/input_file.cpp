#include "input_file/input_file.hpp"

#include "input_file/form_rules.hpp"
#include "input_file/records/record_reader.hpp"
#include "input_file/records/records.hpp"
#include "input_file/sections/sections.hpp"
#include "plain_text/plain_text.hpp"

#include <array>
#include <cerrno>
#include <fstream>
#include <system_error>

namespace velm {
namespace {

constexpr std::array readers{
    &read_system_information, &read_segments, &read_flow_paths,     &read_flow_series, &read_exchanges,
    &read_boundaries,         &read_loads,    &read_time_functions, &read_parameters,  &read_constants,
    &read_initial_conditions};

constexpr std::array<std::string_view, readers.size()> section_names{
    "system information", "segments", "flow paths",     "flow time series",   "dispersive exchanges",
    "boundaries",         "loads",    "time functions", "segment parameters", "constants",
    "initial conditions"};

/// Goes to the banner of a section after `lost` and returns that section's place; the number of sections at the end of
/// the file.
std::size_t find_section_after(RecordReader& in, std::size_t lost)
{
    while (!in.at_end()) {
        for (std::size_t section = lost + 1; section < readers.size(); ++section) {
            if (in.is_ahead(records::banners.at(section))) {
                return section;
            }
        }
        in.skip_line();
    }
    return readers.size();
}

void report_missing_sections(RecordReader& in, std::size_t first, std::size_t last)
{
    for (std::size_t section = first; section < last; ++section) {
        in.enter(static_cast<Section>(section));
        in.report_at(in.next_place(), form_rules::record_out_of_place, "", "",
                     "the section is missing before this line", "its banner and records");
    }
}

void read_sections(RecordReader& in, Model& model)
{
    std::size_t section = 0;
    while (section < readers.size()) {
        in.enter(static_cast<Section>(section));
        try {
            readers.at(section)(in, model);
            ++section;
        } catch (const SectionLost&) {
            in.result.whole = false;
            const std::size_t next = find_section_after(in, section);
            if (next < readers.size()) {
                report_missing_sections(in, section + 1, next);
            }
            section = next;
        }
    }
    if (!in.at_end()) {
        in.report_at(in.next_place(), form_rules::trailing_bytes, "", "", "the file goes on after its last record",
                     "its end");
    }
}

} // namespace

std::string_view name_of(Section section)
{
    return section_names.at(static_cast<std::size_t>(section));
}

InputFile read_input_file(std::istream& input, const ReadOptions& options)
{
    InputFile file;
    RecordReader in(input, options, file);
    read_sections(in, file.model);
    file.bytes = in.bytes();
    if (options.on_progress) {
        options.on_progress(file.bytes);
    }
    return file;
}

InputFile read_input_file(const std::filesystem::path& file, const ReadOptions& options)
{
    errno = 0;
    std::ifstream input(file, std::ios::binary);
    if (!input) {
        throw std::system_error(errno, std::generic_category(), shown(file) + " cannot be opened");
    }
    try {
        return read_input_file(input, options);
    } catch (const std::system_error& error) {
        throw std::system_error(error.code(), shown(file) + " cannot be read");
    }
}

} // namespace velm
