#include "tests/velm_export/one_export.hpp"

#include <algorithm>
#include <sstream>

namespace velm {
namespace {

struct SectionCase {
    std::string title;
    std::size_t section = 0; ///< from 1, in file order
    std::string answers;
    std::string asks;
    std::string writes;
};

std::vector<SectionCase> read_cases()
{
    std::ifstream file(VELM_SECTION_CASES);
    std::vector<SectionCase> cases;
    std::string* part = nullptr;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("=== ")) {
            cases.push_back({line.substr(4), std::stoul(line.substr(4)), {}, {}, {}});
            part = &cases.back().answers;
        } else if (line == "--- asks") {
            part = &cases.back().asks;
        } else if (line == "--- writes") {
            part = &cases.back().writes;
        } else if (part != nullptr && !line.empty()) {
            *part += line + '\n';
        }
    }
    return cases;
}

/// Requests, however they stand on lines, one a line.
std::string one_a_line(const std::string& requests)
{
    std::string lines;
    std::istringstream words(requests);
    for (std::string word; words >> word;) {
        lines.append(lines.empty() ? "" : word.back() == ')' ? "\n" : " ").append(word);
    }
    return lines;
}

std::string requests_of_section(const ScriptedHost& host, std::size_t section)
{
    // the sixth is not announced: its requests follow the fifth's
    const std::size_t announced = section < 6 ? section : section - 1;
    std::string requests;
    for (std::size_t i = 0; i < host.requests.size(); ++i) {
        if (host.fragments_before[i] == version_fragments + 2 * announced) {
            requests += host.requests[i] + ' ';
        }
    }
    return requests;
}

/// The records of a section, its banner left out; of the first section all, its banner is its second record.
std::string records_of_section(const std::string& file, std::size_t section)
{
    std::istringstream records(file);
    std::string wanted;
    std::size_t banners = 0;
    for (std::string record; std::getline(records, record);) {
        const bool banner = record.starts_with(" ====");
        banners += banner ? 1 : 0;
        const bool within = banners == section || (section == 1 && banners == 0);
        wanted += within && !(banner && section != 1) ? record + '\n' : "";
    }
    return wanted;
}

/// Bytes as the cases show them.
std::string shown(std::string_view bytes)
{
    std::ostringstream text;
    for (std::size_t i = 0; i < bytes.size();) {
        const auto c = static_cast<unsigned char>(bytes[i]);
        const std::size_t run = std::min(bytes.find_first_not_of(bytes[i], i), bytes.size()) - i;
        if (bytes.substr(i, 2) == "\r\n") {
            text << "$\n";
            i += 2;
        } else if (c == 0 || (c == ' ' && run >= 16)) {
            text << '{' << (run == 1 ? "" : std::to_string(run) + ' ') << (c == 0 ? "NUL}" : "blanks}");
            i += run;
        } else if (c < ' ' || c > '~') {
            text << '{' << std::hex << std::uppercase << static_cast<int>(c) << std::dec << '}';
            ++i;
        } else {
            text << bytes[i++];
        }
    }
    return text.str();
}

TEST(Sections, ask_and_write_what_the_cases_say)
{
    const std::vector<SectionCase> cases = read_cases();
    for (std::size_t section = 1; section <= 11; ++section) {
        EXPECT_GE(std::ranges::count(cases, section, &SectionCase::section), 2) << "cases of section " << section;
    }
    for (const SectionCase& c : cases) {
        const TestFolder folder;
        ScriptedHost host(c.answers, (folder.path / "model.inp").generic_string());
        run_export(host);
        if (!c.asks.empty()) {
            EXPECT_EQ(one_a_line(requests_of_section(host, c.section)), one_a_line(c.asks)) << c.title;
        }
        if (!c.writes.empty()) {
            const std::string file = content_of(folder.path / "model.inp");
            EXPECT_EQ(shown(records_of_section(file, c.section)), c.writes) << c.title;
        }
    }
}

} // namespace
} // namespace velm
