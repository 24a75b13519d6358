#pragma once

#include <filesystem>
#include <stdexcept>

namespace velm {

/// A file is not as a command needs it, and nothing was done. The text names it and says what to do.
class FileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What may stand at the name of a file that is made.
enum class Standing {
    refused, ///< nothing
    replaced ///< a regular file that may be written
};

/// Where `name` leads, also when nothing stands there yet: a path without symbolic links, which are followed to the
/// end. Throws FileError for links in a circle, for one of another user's that leads out of his own folders, and for a
/// folder that does not exist or cannot be entered.
[[nodiscard]] std::filesystem::path real_place(const std::filesystem::path& name);

/// True when both names lead to one file or, where nothing stands yet, will lead to one. False where one of them leads
/// nowhere.
[[nodiscard]] bool lead_to_one_file(const std::filesystem::path& one, const std::filesystem::path& other);

/// Throws FileError, about `name`, unless a file may be made at the place where it leads.
void refuse_unless_free(const std::filesystem::path& name, const std::filesystem::path& place, Standing standing);

} // namespace velm
