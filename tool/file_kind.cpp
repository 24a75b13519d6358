#include "tool/file_kind.hpp"

#include "tool/exit_code.hpp"
#include "tool/model_file.hpp"

#include <array>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace velm {

FileKind kind_of_file(const std::string& file)
{
    refuse_stream(file, "FILE", "it is read more than once, which a stream cannot be; give a file name");
    std::error_code unknown;
    const std::filesystem::file_status status = std::filesystem::status(file, unknown);
    if (!std::filesystem::exists(status)) {
        throw ToolError(ExitCode::model_unreadable, file + " does not exist");
    }
    if (!std::filesystem::is_regular_file(status)) {
        throw ToolError(ExitCode::model_unreadable, file + " is not a file; give an input file or a model database");
    }
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
