#include "model_store/sqlite/unnamed_database.hpp"

#include "model_store/sqlite/sqlite_database.hpp"

#include <string>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velm {
namespace {

bool is_own_descriptor(std::string_view file)
{
    return file.starts_with("/proc/" + std::to_string(getpid()) + "/fd/");
}

int open_file(const char* file, int flags, int mode)
{
    return open(file, is_own_descriptor(file) ? flags & ~O_NOFOLLOW : flags, static_cast<mode_t>(mode));
}

int status_of_file(const char* file, struct stat* status)
{
    return is_own_descriptor(file) ? stat(file, status) : lstat(file, status);
}

void replace_call(const char* name, sqlite3_syscall_ptr call)
{
    sqlite3_vfs* const system = sqlite3_vfs_find(nullptr);
    if (const int result = system->xSetSystemCall(system, name, call); result != SQLITE_OK) {
        throw SqliteError(result, std::string("the SQLite library does not let its call ") + name + " be replaced");
    }
}

} // namespace

void let_sqlite_open_unnamed_files()
{
    static const bool done = [] {
        sqlite3_initialize();
        replace_call("open", reinterpret_cast<sqlite3_syscall_ptr>(open_file));
        replace_call("lstat", reinterpret_cast<sqlite3_syscall_ptr>(status_of_file));
        return true;
    }();
    static_cast<void>(done);
}

} // namespace velm
