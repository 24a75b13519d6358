#include "host_link/host_keys.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace velm {
namespace {

std::string kind_in_words(const Argument& argument)
{
    switch (argument.kind) {
    case Kind::integer: return "integer";
    case Kind::real: return "real";
    case Kind::text:
        return argument.text_length == 0 ? "text of any length" : "text of " + std::to_string(argument.text_length);
    case Kind::series: return "series";
    }
    return "?";
}

std::string table_of_keys()
{
    std::string table = "| Key | Key length | Call form | Arguments, in order |\n|---|---|---|---|\n";
    for (const HostKey& key : host_keys) {
        table += "| `" + std::string(key.name) + "` | " + std::to_string(key.length()) + " | " +
                 std::to_string(key.argument_count) + " | ";
        for (std::size_t i = 0; i < key.argument_count; ++i) {
            const Argument& argument = key.arguments[i];
            table += (i == 0 ? "" : "; ") + std::string(argument.direction == Direction::in ? "in " : "out ") +
                     kind_in_words(argument) + ": " + std::string(argument.meaning);
        }
        table += " |\n";
    }
    return table;
}

/// The lines from the table's head to the next line that is no row.
std::string table_in_the_document()
{
    std::ifstream document(VELM_HOST_PROTOCOL);
    std::string table;
    for (std::string line; std::getline(document, line);) {
        if (line.starts_with("| Key |") || (!table.empty() && line.starts_with("|"))) {
            table += line + '\n';
        } else if (!table.empty()) {
            break;
        }
    }
    return table;
}

TEST(HostProtocolDocument, ListsEveryKeyAsItTravels)
{
    EXPECT_TRUE(table_in_the_document() == table_of_keys())
        << "docs/host-protocol.md is stale; its table of keys should be\n\n"
        << table_of_keys();
}

} // namespace
} // namespace velm
