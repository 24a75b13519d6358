#include "input_file/records.hpp"

#include <cctype>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace velm {
namespace {

using Tokens = std::vector<std::string>;

/// A record as the document writes it: "I5", "15x", "F10.4"; of a label its text.
Tokens tokens_of(const Record& record)
{
    Tokens tokens;
    std::size_t next = 1;
    for (const Part& part : record) {
        if (part.column != next) {
            tokens.push_back(std::to_string(part.column - next) + "x");
        }
        next = part.end() + 1;
        const std::string width = std::to_string(part.width);
        switch (part.kind) {
        case PartKind::label: tokens.emplace_back(part.name); break;
        case PartKind::integer: tokens.push_back("I" + width); break;
        case PartKind::real: tokens.push_back("F" + width + "." + std::to_string(part.decimals)); break;
        case PartKind::text: tokens.push_back("A" + width); break;
        }
    }
    return tokens;
}

/// The document's notation, one token for each of a repeated group: "6I5" and "4(I5)".
Tokens tokens_of(const std::string& layout)
{
    Tokens tokens;
    std::istringstream items(layout);
    for (std::string item; std::getline(items, item, ',');) {
        if (item.empty()) {
            continue;
        }
        std::size_t digits = 0;
        while (std::isdigit(static_cast<unsigned char>(item[digits])) != 0) {
            ++digits;
        }
        if (item.front() == '\'') {
            tokens.push_back(item.substr(1, item.size() - 2));
        } else if (digits == 0 || item.back() == 'x') {
            tokens.push_back(item);
        } else {
            std::string repeated = item.substr(digits);
            if (repeated.front() == '(') {
                repeated = repeated.substr(1, repeated.size() - 2);
            }
            tokens.insert(tokens.end(), std::stoul(item), repeated);
        }
    }
    return tokens;
}

/// Of a row of a table the cell, from 1.
std::string cell(const std::string& row, int number)
{
    std::istringstream cells(row);
    std::string text;
    for (int i = 0; i <= number; ++i) {
        std::getline(cells, text, '|');
    }
    return text;
}

struct Document {
    std::map<std::string, std::vector<Tokens>> layouts; ///< by the section's heading, in their order
    std::vector<std::string> geometry_columns;          ///< "1-5"
};

Document read_document()
{
    Document document;
    std::ifstream file(VELM_FILE_FORMAT_DOCUMENT);
    std::string section;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("## ")) {
            section = line.substr(3);
        }
        const std::string columns = line.starts_with('|') ? cell(line, 2) : "";
        if (columns.starts_with(" `") && std::isdigit(static_cast<unsigned char>(section[0])) != 0) {
            std::string layout;
            for (std::size_t at = 0; at < columns.size();) { // backticks, and blanks outside of them, mean nothing
                const std::size_t tick = columns.find('`', at + 1);
                const bool inside = columns[at] == '`';
                layout += inside ? columns.substr(at + 1, tick - at - 1) : "";
                if (columns.compare(at, 6, " label") == 0) {
                    layout += "label,";
                }
                at = inside ? tick + 1 : at + 1;
            }
            document.layouts[section].push_back(tokens_of(layout));
        } else if (line.starts_with("| ") && std::isdigit(static_cast<unsigned char>(line[2])) != 0 &&
                   section == "2. Segments") {
            std::istringstream ranges(cell(line, 1));
            for (std::string range; std::getline(ranges, range, ',');) {
                std::erase(range, ' ');
                document.geometry_columns.push_back(range);
            }
        }
    }
    return document;
}

void expect_same(const Record& record, const Tokens& described)
{
    const Tokens read = tokens_of(record);
    ASSERT_EQ(read.size(), described.size()) << record.name();
    for (std::size_t i = 0; i < read.size(); ++i) {
        if (described[i] != "label") {
            EXPECT_EQ(read[i], described[i]) << record.name();
        }
    }
}

TEST(FileFormatDocument, has_the_columns_that_are_read)
{
    using namespace records;
    const std::map<std::string, std::vector<const Record*>> sections = {
        {"1. System information",
         {&module_type, &start_date_and_time, &skip_date_and_time, &julian_end_time, &number_of_systems,
          &mass_balance_table_output, &solution_technique, &negative_solution, &restart, &time_optimization,
          &water_quality_linkage, &topt_factor, &time_steps, &print_interval, &records::system}},
        {"2. Segments",
         {&number_of_segments, &bed_volume_option, &bed_compaction_time_step, &volume_factors, &segment_name,
          &segment}},
        {"3. Flow paths", {&number_of_flow_path_fields, &number_of_flow_functions, &flow_path}},
        {"4. Flow series", {&number_of_flow_fields, &number_of_inflows, &flow_factors, &inflow, &number_of_time_pairs}},
        {"5. Dispersive exchanges",
         {&number_of_exchange_fields, &number_of_exchange_functions, &exchange_factors, &number_of_exchange_pairs,
          &number_of_time_pairs}},
        {"6. Boundaries",
         {&number_of_systems, &number_of_boundaries, &boundary_factors, &boundary_segment, &number_of_time_pairs}},
        {"7. Loads",
         {&nps_option, &nps_file, &number_of_systems, &number_of_loads, &load_factors, &load_segment,
          &number_of_time_pairs, &load_value}},
        {"8. Time functions", {&number_of_time_functions, &time_function, &number_of_time_pairs, &time_function_value}},
        {"9. Segment parameters",
         {&number_of_segments, &number_of_parameters, &parameter, &assigned_segment, &parameter_value}},
        {"10. Constants", {&number_of_constants, &constant}},
        {"11. Initial conditions",
         {&repeated_number_of_systems, &repeated_number_of_segments, &initial_conditions_for_system,
          &solids_transport_field, &solids_density, &maximum_concentration}},
    };
    const Document document = read_document();
    ASSERT_EQ(document.layouts.size(), sections.size());
    for (const auto& [heading, read] : sections) {
        SCOPED_TRACE(heading);
        ASSERT_TRUE(document.layouts.contains(heading));
        const std::vector<Tokens>& described = document.layouts.at(heading);
        ASSERT_EQ(read.size(), described.size());
        for (std::size_t i = 0; i < read.size(); ++i) {
            expect_same(*read[i], described[i]);
        }
    }
    ASSERT_EQ(document.geometry_columns.size(), segment.size());
    for (std::size_t i = 0; i < segment.size(); ++i) {
        EXPECT_EQ(document.geometry_columns[i],
                  std::to_string(segment[i].column) + "-" + std::to_string(segment[i].end()));
    }
}

} // namespace
} // namespace velm
