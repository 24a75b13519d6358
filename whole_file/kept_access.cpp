#include "whole_file/kept_access.hpp"

#include "whole_file/descriptor.hpp"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include <sys/stat.h>
#include <sys/xattr.h>

namespace velm {
namespace {

constexpr const char* access_list = "system.posix_acl_access";

/// A file that was opened without the right to read it has attributes by this name only.
std::string name_of(int descriptor)
{
    return "/proc/self/fd/" + std::to_string(descriptor);
}

/// All that `read` gives; empty when there is nothing, or nothing to be had.
template <class Read>
std::vector<char> read_all(Read read)
{
    constexpr std::size_t longest = 65'536; // of a name list and of a value
    std::vector<char> bytes(longest);
    const ssize_t size = read(bytes.data(), bytes.size());
    bytes.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    return bytes;
}

std::vector<char> attribute(const std::string& file, const char* name)
{
    return read_all([&](char* to, std::size_t room) { return getxattr(file.c_str(), name, to, room); });
}

void copy_attributes(const std::string& from, int to)
{
    const std::vector<char> names =
        read_all([&](char* list, std::size_t room) { return listxattr(from.c_str(), list, room); });
    for (std::size_t at = 0; at < names.size(); at += std::strlen(&names[at]) + 1) {
        const char* const name = &names[at];
        // capabilities are rights of the program that the file was; a list is set with the permissions
        if (std::string_view(name) != access_list && std::string_view(name) != "security.capability") {
            const std::vector<char> value = attribute(from, name);
            [[maybe_unused]] const int result = fsetxattr(to, name, value.data(), value.size(), 0);
        }
    }
}

/// A mode without an access list that gives nobody more than the list does, under which the group's bits of the mode
/// are the most that groups and named users have: the group keeps what its own entry has, too, and others, among whom
/// those named are then, what each of these entries has. The list has a version of four bytes, then entries of kind (2
/// bytes), permissions (2) and number (4), least byte first.
mode_t mode_without_list(mode_t mode, const std::vector<char>& list)
{
    constexpr char named_user = 2;
    constexpr char owning_group = 4;
    constexpr char named_group = 8;
    for (std::size_t at = 4; at + 8 <= list.size(); at += 8) {
        const char kind = list[at];
        const mode_t held = mode_t{S_IRWXU} | static_cast<unsigned char>(list[at + 2]) * 011U;
        if (kind == owning_group) {
            mode &= held | S_IRWXO;
        } else if (kind == named_user || kind == named_group) {
            mode &= held | S_IRWXG;
        }
    }
    return mode;
}

/// A mode for another group: it has what everybody has, which is no more than the old group had.
mode_t mode_of_other_group(mode_t mode)
{
    const mode_t all = mode & (mode >> 3U) & S_IRWXO;
    return (mode & ~mode_t{S_IRWXG | S_IRWXO}) | (all << 3U) | all;
}

} // namespace

void keep_access(int from, int to)
{
    struct stat before {};
    struct stat after {};
    if (fstat(from, &before) != 0) {
        throw std::system_error(errno, std::generic_category());
    }
    // only the superuser may give files away, and others a group only that they are in
    [[maybe_unused]] int result = fchown(to, before.st_uid, static_cast<gid_t>(-1));
    result = fchown(to, static_cast<uid_t>(-1), before.st_gid);
    if (fstat(to, &after) != 0) {
        throw std::system_error(errno, std::generic_category());
    }
    const std::string old_name = name_of(from);
    copy_attributes(old_name, to);
    mode_t mode = before.st_mode & 07777U;
    mode &= after.st_uid == before.st_uid ? ~mode_t{0} : ~mode_t{S_ISUID};
    mode &= after.st_gid == before.st_gid ? ~mode_t{0} : ~mode_t{S_ISGID};
    const std::vector<char> list = attribute(old_name, access_list);
    if (after.st_gid != before.st_gid) {
        mode = mode_of_other_group(mode_without_list(mode, list));
        fremovexattr(to, access_list);
    } else if (list.empty()) {
        fremovexattr(to, access_list); // one that the folder gives to its new files
    } else if (fsetxattr(to, access_list, list.data(), list.size(), 0) != 0) {
        mode = mode_without_list(mode, list);
    }
    if (fchmod(to, mode) != 0) {
        throw std::system_error(errno, std::generic_category());
    }
}

} // namespace velm
