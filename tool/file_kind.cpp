#include "tool/file_kind.hpp"

#include "tool/file_arguments.hpp"
#include "tool/model_file.hpp"

#include <array>
#include <fstream>
#include <string_view>

namespace velm {

FileKind kind_of_file(const FileName& file)
{
    refuse_stream(file, "FILE", "it is read more than once, which a stream cannot be; give a file name");
    refuse_unless_regular(file, ExitCode::model_unreadable);
    constexpr std::string_view beginning("SQLite format 3\0", 16);
    std::array<char, beginning.size()> found{};
    std::ifstream input(file, std::ios::binary);
    if (!input) {
        throw ToolError(ExitCode::model_unreadable, file + " cannot be opened; may you read it?");
    }
    input.read(found.data(), found.size());
    return std::string_view(found.data(), found.size()) == beginning ? FileKind::database : FileKind::input_file;
}

} // namespace velm
