#include "tool/replaced_file.hpp"

#include "tool/exit_code.hpp"
#include "tool/operating_system.hpp"

#include <string>

namespace velm {
namespace {

namespace fs = std::filesystem;

/// Follows symbolic links to the end, also when nothing stands there yet.
fs::path target_of(fs::path file)
{
    constexpr int most_links = 40;
    for (int links = 0; fs::is_symlink(fs::symlink_status(file)); ++links) {
        if (links == most_links) {
            throw ToolError(ExitCode::usage, file.string() + " is a symbolic link that leads in a circle");
        }
        file = file.parent_path() / fs::read_symlink(file);
    }
    return file;
}

void refuse_unless_replaceable(const fs::path& file)
{
    const fs::file_status status = fs::status(file);
    if (fs::is_directory(status) || !file.has_filename()) {
        throw ToolError(ExitCode::usage, file.string() + " is a directory; name a file in it");
    }
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        throw ToolError(ExitCode::usage, file.string() + " is a device, a pipe or a socket, which cannot be replaced "
                                                         "by a complete file; name a regular file");
    }
    if (fs::exists(status) && !may_write(file)) {
        throw ToolError(ExitCode::usage, file.string() + " is write-protected; allow writing to it or name another");
    }
}

/// The name says which file it was to become, in case a power failure leaves it behind.
fs::path temporary_beginning(const fs::path& file)
{
    constexpr std::size_t most_characters = 200; // a file system takes 255, this adds 13
    return file.parent_path() / std::string(".").append(file.filename().string(), 0, most_characters).append(".velm-");
}

} // namespace

fs::path create_temporary_file_beside(const fs::path& file)
{
    return create_temporary_file(temporary_beginning(file), !fs::exists(file));
}

ReplacedFile::ReplacedFile(const fs::path& file) : target(target_of(file))
{
    refuse_unless_replaceable(target);
    temporary_file = create_temporary_file_beside(target);
}

ReplacedFile::~ReplacedFile()
{
    if (!in_place) {
        discard(temporary_file);
    }
}

void ReplacedFile::put_in_place()
{
    velm::put_in_place(temporary_file, target);
    in_place = true;
}

} // namespace velm
