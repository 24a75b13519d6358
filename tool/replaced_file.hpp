#pragma once

#include <filesystem>

namespace velm {

/// A file that is replaced whole or not at all. It is written under a temporary name in the same directory;
/// what stood at its own name is untouched until put_in_place. A symbolic link stays one: its target is replaced.
class ReplacedFile {
public:
    /// Creates the temporary file, empty. Throws ToolError when `file` is a directory, a device, a pipe or
    /// write-protected, and std::system_error when the directory takes no file.
    explicit ReplacedFile(const std::filesystem::path& file);
    /// Removes the temporary file unless it was put in place.
    ~ReplacedFile();
    ReplacedFile(const ReplacedFile&) = delete;
    ReplacedFile& operator=(const ReplacedFile&) = delete;
    ReplacedFile(ReplacedFile&&) = delete;
    ReplacedFile& operator=(ReplacedFile&&) = delete;

    [[nodiscard]] const std::filesystem::path& temporary() const { return temporary_file; }

    /// Call when the temporary file is complete and closed; once.
    void put_in_place();

private:
    std::filesystem::path target;
    std::filesystem::path temporary_file;
    bool in_place = false;
};

/// Creates a file beside `file`, empty, that is removed when the process ends. discard() removes it before. Throws
/// std::system_error when the directory takes no file.
[[nodiscard]] std::filesystem::path create_temporary_file_beside(const std::filesystem::path& file);

} // namespace velm
