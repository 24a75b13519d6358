#include "tool/files/file_kind.hpp"

#include "plain_text/plain_text.hpp"
#include "tool/files/file_arguments.hpp"
#include "tool/files/model_file.hpp"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

namespace velm {
namespace {

constexpr std::string_view beginning_of_a_database("SQLite format 3\0", 16);

/// The first record of an input file, or what follows it where somebody cut that off.
bool may_be_input_file(const std::string& beginning)
{
    return beginning.find("Module Type") != std::string::npos || beginning.find(" ==========") != std::string::npos;
}

std::string beginning_of(std::istream& input)
{
    constexpr std::size_t longest_beginning = 4096;
    std::string beginning(longest_beginning, '\0');
    input.read(beginning.data(), longest_beginning);
    beginning.resize(static_cast<std::size_t>(input.gcount()));
    return beginning;
}

[[noreturn]] void refuse(const FileName& file, const std::string& why)
{
    throw ToolError(ExitCode::model_unreadable, file + " " + why);
}

} // namespace

FileKind kind_of_file(const FileName& file)
{
    refuse_stream(file, "FILE", "it is read more than once, which a stream cannot be; give a file name");
    refuse_unless_regular(file, ExitCode::model_unreadable);
    std::ifstream input(file, std::ios::binary);
    if (!input) {
        refuse(file,
               "cannot be opened: " + std::generic_category().message(errno) + "; ask its owner, or give another file");
    }
    const std::string beginning = beginning_of(input);
    if (beginning.starts_with(beginning_of_a_database)) {
        return FileKind::database;
    }
    if (beginning.empty()) {
        refuse(file, "is empty; give a model database, such as velm new makes, or an input file");
    }
    if (!may_be_input_file(beginning)) {
        constexpr std::size_t shown_bytes = 16;
        refuse(file, "is neither a model database nor an input file, it begins with '" +
                         printable(beginning, shown_bytes) +
                         "'; velm docs model-database says how values of a table get into a database");
    }
    return FileKind::input_file;
}

void refuse_to_replace_model(const FileName& output, bool by_input_file)
{
    std::error_code unknown; // then it cannot be written either
    if (!std::filesystem::is_regular_file(output.text(), unknown)) {
        return;
    }
    std::ifstream input(output, std::ios::binary);
    const std::string beginning = beginning_of(input);
    const bool is_database = beginning.starts_with(beginning_of_a_database);
    if (is_database || (!by_input_file && may_be_input_file(beginning))) {
        throw ToolError(ExitCode::usage,
                        output + (is_database ? " is a database" : " is an input file") +
                            ", which is not replaced by another kind of file; remove it first, or name another file");
    }
}

} // namespace velm
