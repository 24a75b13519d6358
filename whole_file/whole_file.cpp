#include "whole_file/whole_file.hpp"

#include "plain_text/plain_text.hpp"
#include "whole_file/descriptor.hpp"
#include "whole_file/kept_access.hpp"
#include "whole_file/private_folder.hpp"

#include <cerrno>
#include <cstdio>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace velm {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const std::string& what, const fs::path& file)
{
    throw std::system_error(errno, std::generic_category(), what + ' ' + shown(file));
}

/// What a user can do about it is his to know before anything is done; a full disk is a failure.
[[noreturn]] void fail_to_make(const fs::path& name, const fs::path& place)
{
    const std::string in_folder = shown(name) + " cannot be made: ";
    switch (errno) {
    case EACCES:
    case EPERM:
        throw FileError(in_folder + "the folder " + shown(place.parent_path()) +
                        " may not be written to; allow it, or name another folder");
    case EROFS: throw FileError(in_folder + "the file system is read-only; name a folder on another");
    default: fail("cannot make", name);
    }
}

void refuse_write_protected(const fs::path& name, const fs::path& place)
{
    if (access(place.c_str(), F_OK) == 0 && access(place.c_str(), W_OK) != 0) {
        throw FileError(shown(name) + " is write-protected; allow writing to it, or name another file");
    }
}

bool knows_unnamed_files()
{
    return errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL && errno != ENOSYS;
}

} // namespace

struct WholeFile::Making {
    fs::path name;
    fs::path place;
    Descriptor folder; ///< of the place
    Descriptor file{-1};
    std::optional<PrivateFolder> own_folder{};

    Making(fs::path given_name, fs::path real_place, mode_t mode);
    [[nodiscard]] std::string content() const
    {
        return "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(file.number());
    }
    /// False, with errno, when that fails.
    [[nodiscard]] bool link_to(int folder_of_name, const char* name_there) const
    {
        return linkat(AT_FDCWD, content().c_str(), folder_of_name, name_there, AT_SYMLINK_FOLLOW) == 0;
    }
    void give_free_name() const;
    void replace();
};

WholeFile::Making::Making(fs::path given_name, fs::path real_place, mode_t mode)
    : name(std::move(given_name)), place(std::move(real_place)),
      folder(open(place.parent_path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC))
{
    if (!folder.valid()) {
        fail_to_make(name, place);
    }
    file = Descriptor(openat(folder.number(), ".", O_TMPFILE | O_RDWR | O_CLOEXEC, mode));
    if (!file.valid() && !knows_unnamed_files()) {
        try {
            own_folder.emplace(folder.number());
            file = own_folder->make_content(mode);
        } catch (const std::system_error& error) {
            errno = error.code().value();
        }
    }
    if (!file.valid()) {
        fail_to_make(name, place);
    }
}

/// A link fails where the name is taken, a plain rename would replace. Some file systems have no links.
void WholeFile::Making::give_free_name() const
{
    const std::string file_name = place.filename().string();
    bool given = link_to(folder.number(), file_name.c_str());
    if (!given && errno != EEXIST && own_folder) {
        given = renameat2(own_folder->number(), "content", folder.number(), file_name.c_str(), RENAME_NOREPLACE) == 0;
    }
    if (!given && errno == EEXIST) {
        refuse_unless_free(name, place, Standing::refused);
    }
    if (!given) {
        fail("cannot give the name", name);
    }
}

void WholeFile::Making::replace()
{
    const std::string file_name = place.filename().string();
    const Descriptor old(openat(folder.number(), file_name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    if (!old.valid() && errno == ENOENT && link_to(folder.number(), file_name.c_str())) {
        return;
    }
    struct stat status {};
    if (old.valid() && (fstat(old.number(), &status) != 0 || !S_ISREG(status.st_mode))) {
        throw FileError(shown(name) + " has become a link, a folder or a device meanwhile, and is left as it is");
    }
    try {
        if (old.valid()) {
            keep_access(old.number(), file.number());
        }
    } catch (const std::system_error& error) {
        errno = error.code().value();
        fail("cannot keep the permissions of", name);
    }
    if (!own_folder) { // a link cannot replace: the file gets a name where nobody else can give it to another
        own_folder.emplace(folder.number());
        if (!link_to(own_folder->number(), "content")) {
            fail("cannot give a name to what becomes", name);
        }
        own_folder->hold(file.number());
    }
    if (!leads_to(own_folder->number(), "content", file.number())) {
        errno = ENOENT;
        fail("somebody has taken away what was to become", name);
    }
    if (renameat(own_folder->number(), "content", folder.number(), file_name.c_str()) != 0) {
        fail("cannot replace", name);
    }
}

WholeFile::WholeFile(const fs::path& name, Standing standing)
    : name_(name), place_(real_place(name)), standing_(standing)
{
    refuse_unless_free(name_, place_, standing);
    refuse_write_protected(name_, place_);
    constexpr mode_t as_the_folder_has_it = 0666;
    constexpr mode_t as_the_old_one_later = 0600;
    making_ = std::make_unique<Making>(name_, place_, fs::exists(place_) ? as_the_old_one_later : as_the_folder_has_it);
    content_ = making_->content();
}

WholeFile::WholeFile() : standing_(Standing::refused)
{
    std::error_code error;
    const fs::path folder = fs::temp_directory_path(error);
    if (error) {
        throw FileError("the folder for temporary files is none: " + error.message() + "; name one in TMPDIR");
    }
    making_ = std::make_unique<Making>(folder, folder / "a temporary file", 0600);
    fchmod(making_->file.number(), 0600); // whatever the umask: it is opened by name
    content_ = making_->content();
}

WholeFile::~WholeFile() = default;

void WholeFile::put_in_place()
{
    if (fsync(making_->file.number()) != 0) {
        fail("cannot write to the disk", name_);
    }
    {
        const SignalsHeld held;
        if (standing_ == Standing::refused) {
            making_->give_free_name();
        } else {
            making_->replace();
        }
    }
    const Descriptor folder(openat(making_->folder.number(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    fsync(folder.number()); // a folder that cannot do this is no failure: the name stands
    making_.reset();
}

} // namespace velm
