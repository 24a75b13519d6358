#include "input_file/real_text.hpp"
#include "input_file/records.hpp"

#include <algorithm>
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

/// A row of one of the document's tables.
struct Row {
    std::string section; ///< the heading above it
    std::vector<std::string> cells;
};

std::vector<Row> read_document()
{
    std::vector<Row> rows;
    std::ifstream file(VELM_FILE_FORMAT_DOCUMENT);
    std::string section;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("##")) {
            section = line.substr(line.find(' ') + 1);
        } else if (line.starts_with("| ")) {
            Row& row = rows.emplace_back(Row{section, {}});
            std::istringstream cells(line.substr(1));
            for (std::string cell; std::getline(cells, cell, '|');) {
                const std::size_t begin = std::min(cell.find_first_not_of(' '), cell.size());
                row.cells.push_back(cell.substr(begin, cell.find_last_not_of(' ') + 1 - begin));
            }
        }
    }
    return rows;
}

/// What stands between the backticks of a cell; elsewhere a label is marked by the word.
std::string layout_in(const std::string& cell)
{
    std::string layout;
    for (std::size_t at = 0; at < cell.size();) {
        const std::size_t tick = cell.find('`', at + 1);
        const bool inside = cell[at] == '`';
        layout += inside ? cell.substr(at + 1, tick - at - 1) : "";
        if (cell.compare(at, 6, " label") == 0) {
            layout += "label,";
        }
        at = inside ? tick + 1 : at + 1;
    }
    return layout;
}

/// The number before " characters", 0 where there is none.
std::size_t characters_in(const std::string& cell)
{
    const std::size_t end = cell.find(" characters");
    return end == std::string::npos ? 0 : std::stoul(cell.substr(cell.rfind(' ', end - 1) + 1));
}

std::size_t width_of_text(const Record& record)
{
    const auto* const text =
        std::find_if(record.begin(), record.end(), [](const Part& part) { return part.kind == PartKind::text; });
    return text == record.end() ? record.width() : text->width;
}

/// Of a cell in backticks, with · for a blank.
std::string shown_in(std::string cell)
{
    constexpr std::string_view dot = "·";
    for (std::size_t at = cell.find(dot); at != std::string::npos; at = cell.find(dot)) {
        cell.replace(at, dot.size(), 1, ' ');
    }
    return cell.substr(1, cell.size() - 2);
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
    std::map<std::string, std::vector<Tokens>> described;
    for (const Row& row : read_document()) {
        if (sections.contains(row.section) && row.cells[1].starts_with('`')) {
            described[row.section].push_back(tokens_of(layout_in(row.cells[1])));
        }
    }
    for (const auto& [heading, read] : sections) {
        SCOPED_TRACE(heading);
        ASSERT_EQ(read.size(), described[heading].size());
        for (std::size_t i = 0; i < read.size(); ++i) {
            expect_same(*read[i], described[heading][i]);
        }
    }
}

TEST(FileFormatDocument, has_the_columns_of_the_geometry)
{
    std::vector<std::string> described;
    for (const Row& row : read_document()) {
        if (row.section == "2. Segments" && std::isdigit(static_cast<unsigned char>(row.cells[0][0])) != 0) {
            std::istringstream ranges(row.cells[0]);
            for (std::string range; std::getline(ranges, range, ',');) {
                std::erase(range, ' ');
                described.push_back(range);
            }
        }
    }
    std::vector<std::string> read;
    for (const Part& part : records::segment) {
        read.push_back(std::to_string(part.column) + "-" + std::to_string(part.end()));
    }
    EXPECT_EQ(read, described);
}

TEST(FileFormatDocument, has_the_lengths_that_are_read)
{
    using namespace records;
    const std::vector<const Record*> free_texts = {
        &segment_caption, &hydrodynamic_file, &flow_function, &field_name, // flows
        &field_name,      &exchange_function, &system_name,   &system_name};
    const std::map<std::string, std::vector<const Record*>> texts = {
        {"system tag", {&records::system}},
        {"system name", {&system_name, &initial_conditions_for_system}},
        {"segment name", {&segment_name}},
        {"description of a flow function", {&inflow}},
        {"description of a time function", {&time_function}},
        {"description of a parameter", {&parameter}},
        {"description of a constant", {&constant}},
        {"file names", {&nps_file}}};
    std::size_t next = 0;
    std::size_t tables = 0;
    for (const Row& row : read_document()) {
        if (const std::size_t length = characters_in(row.cells[1]); length != 0) {
            ASSERT_LT(next, free_texts.size());
            EXPECT_EQ(length, width_of_text(*free_texts[next++])) << row.cells[0];
        }
        if (const auto text = texts.find(row.cells[0]); text != texts.end()) {
            ++tables;
            std::string expected;
            for (const Record* const record : text->second) {
                expected.append(1, 'A').append(std::to_string(width_of_text(*record)));
            }
            EXPECT_EQ(layout_in(row.cells[2]), expected) << row.cells[0];
        }
    }
    EXPECT_EQ(next, free_texts.size());
    EXPECT_EQ(tables, texts.size());
}

TEST(FileFormatDocument, shows_reals_as_they_are_read)
{
    std::size_t fields = 0;
    std::size_t free = 0;
    for (const Row& row : read_document()) {
        if (row.section == "Reals" && row.cells[0].starts_with("`F")) {
            const std::string layout = layout_in(row.cells[0]);
            const std::size_t width = std::stoul(layout.substr(1));
            const std::size_t decimals = std::stoul(layout.substr(layout.find('.') + 1));
            EXPECT_EQ(field_text(std::stof(row.cells[1]), width, decimals), shown_in(row.cells[2]));
            ++fields;
        } else if (row.section == "Free records" && row.cells[1].starts_with('`')) {
            EXPECT_EQ(row_text(std::stof(row.cells[0])), shown_in(row.cells[1]));
            ++free;
        }
    }
    EXPECT_GE(fields, 9U);
    EXPECT_GE(free, 8U);
}

} // namespace
} // namespace velm
