#include "whole_file/place.hpp"

#include "plain_text/plain_text.hpp"

#include <string>
#include <system_error>
#include <vector>

#ifdef _WIN32
#include <cwchar>
#else
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace velm {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuse(const fs::path& file, const std::string& why)
{
    throw FileError(shown(file) + ' ' + why);
}

/// The folder of `file`, without links.
fs::path real_folder(const fs::path& file)
{
    std::error_code error;
    const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
    fs::path real = fs::canonical(folder, error);
    std::error_code unknown;
    if (error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory ||
        (!error && !fs::is_directory(real, unknown))) {
        throw FileError("the folder " + shown(folder) + " does not exist; make it, or name another");
    }
    if (error) {
        throw FileError("the folder " + shown(folder) + " cannot be entered: " + error.message() + "; name another");
    }
    return real;
}

/// Whether two names of one folder are one.
bool is_one_name(const fs::path& one, const fs::path& other)
{
#ifdef _WIN32
    return _wcsicmp(one.c_str(), other.c_str()) == 0;
#else
    return one == other;
#endif
}

/// A link of another user's must not lead to a file that he could not replace himself.
#ifdef _WIN32
void refuse_misleading_link(const fs::path& /*name*/, const fs::path& /*link*/, const fs::path& /*place*/) {}
void refuse_closed_umask(const fs::path& /*name*/) {}
#else
void refuse_misleading_link(const fs::path& name, const fs::path& link, const fs::path& place)
{
    struct stat owned {};
    struct stat folder {};
    if (lstat(link.c_str(), &owned) != 0 ||
        (owned.st_uid != geteuid() && owned.st_uid != 0 &&
         (stat(place.parent_path().c_str(), &folder) != 0 || folder.st_uid != owned.st_uid))) {
        refuse(name, "is a symbolic link of another user's that leads to " + shown(place) +
                         ", in a folder that is not "
                         "his; name that file if you mean it");
    }
}

void refuse_closed_umask(const fs::path& name)
{
    const mode_t mask = umask(0);
    umask(mask);
    if ((mask & (S_IRUSR | S_IWUSR)) != 0) {
        refuse(name, "cannot be made: the umask takes from you the right to read and write your own "
                     "new files; set another, such as umask 022");
    }
}
#endif

} // namespace

fs::path real_place(const fs::path& name)
{
    constexpr int most_links = 40;
    std::error_code error;
    fs::path file = name;
    std::vector<fs::path> followed;
    for (int links = 0; links < most_links; ++links) {
        if (!file.has_filename() || file.filename() == "." || file.filename() == "..") {
            refuse(name, "is a directory; name a file in it");
        }
        fs::path place = real_folder(file) / file.filename();
        if (fs::symlink_status(place, error).type() != fs::file_type::symlink) {
            for (const fs::path& link : followed) {
                refuse_misleading_link(name, link, place);
            }
            return place;
        }
        followed.push_back(place);
        file = place.parent_path() / fs::read_symlink(place, error);
        if (error) {
            refuse(name, "is a symbolic link that cannot be read: " + error.message() + "; name another file");
        }
    }
    refuse(name, "is a symbolic link that leads in a circle; name another file");
}

bool lead_to_one_file(const fs::path& one, const fs::path& other)
{
    std::error_code unresolved; // what does not exist is told apart by its place
    if (fs::equivalent(one, other, unresolved) && !unresolved) {
        return true;
    }
    try {
        const fs::path first = real_place(one);
        const fs::path second = real_place(other);
        return is_one_name(first.filename(), second.filename()) &&
               fs::equivalent(first.parent_path(), second.parent_path(), unresolved);
    } catch (const FileError&) { // its use will say what is wrong with it
        return false;
    }
}

void refuse_unless_free(const fs::path& name, const fs::path& place, Standing standing)
{
    refuse_closed_umask(name);
    std::error_code error;
    // a link that leads nowhere takes a name too
    fs::file_status status = fs::symlink_status(standing == Standing::refused ? name : place, error);
    if (status.type() == fs::file_type::not_found && standing == Standing::replaced) {
        status = fs::status(name, error); // /dev/stdout leads to a pipe, which has no place
    }
    if (status.type() == fs::file_type::not_found) {
        return;
    }
    if (error) {
        refuse(name, "cannot be made: " + error.message() + "; give another name");
    }
    if (standing == Standing::refused) {
        refuse(name, "exists and is left as it is; give a name that is not taken");
    }
    if (fs::is_directory(status)) {
        refuse(name, "is a directory; name a file in it");
    }
    if (!fs::is_regular_file(status)) {
        refuse(name, "is a device, a pipe or a socket, which cannot be replaced by a complete file; name a regular "
                     "file");
    }
}

} // namespace velm
