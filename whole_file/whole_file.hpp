#pragma once

#include "whole_file/place.hpp"

#include <filesystem>
#include <memory>

namespace velm {

/// A file that gets its name when it is whole, or is never seen. Where the file system can, it has no name until then,
/// so that nothing is left of it however the process ends; elsewhere it lies in a folder of its own that only this user
/// may enter, and that goes with the object, with exit and with signals that end a process. A symbolic link stays one:
/// what it leads to is made.
class WholeFile {
public:
    /// Makes the file, empty, on the file system of `name`. Throws FileError when no file can be made there or what
    /// stands there is not to be replaced, and std::system_error when the system has no room for it.
    WholeFile(const std::filesystem::path& name, Standing standing);
    /// A file that never gets a name, in the folder for temporary files.
    WholeFile();
    ~WholeFile();
    WholeFile& operator=(WholeFile&&) = delete; // neither copied nor moved

    /// The name as it was given.
    [[nodiscard]] const std::filesystem::path& name() const { return name_; }
    /// Where the file is to stand, without symbolic links.
    [[nodiscard]] const std::filesystem::path& place() const { return place_; }
    /// By what name the file is opened until then, to be written and read. Nobody else can put another in its place.
    [[nodiscard]] const std::filesystem::path& content() const { return content_; }

    /// Writes the file through to the disk and gives it its name; call it once, when the file is whole and closed. One
    /// that is replaced hands on its permissions, access list, attributes and, where the system allows it, its owner.
    /// Throws std::system_error, and FileError for a name that was taken meanwhile; then what stands there is
    /// untouched.
    void put_in_place();

private:
    struct Making;

    std::filesystem::path name_;
    std::filesystem::path place_;
    std::filesystem::path content_;
    Standing standing_;
    std::unique_ptr<Making> making_;
};

} // namespace velm
