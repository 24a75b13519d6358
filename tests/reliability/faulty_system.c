/*
 * Stands before the system's own calls (LD_PRELOAD) and lets one kind of them fail:
 *
 *   FAULT_CALL    open, write, fsync, fchmod, fsetxattr, linkat, renameat, mkdirat or close; an openat is an open
 *   FAULT_NUMBER  which of the process's calls of this kind, from 1; standard streams do not count
 *   FAULT_ERROR   the error number
 *   FAULT_AGAIN   set: all later ones fail too
 *   NO_UNNAMED    set: there are no files without a name
 *   EXCHANGED     a folder that somebody puts in the place of each new one
 *   SHORT_WRITES  set: every second write is interrupted, the others take a thousand bytes at most
 *
 * A fault that has come is told on standard error: [fault].
 */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/xattr.h>
#include <unistd.h>

#pragma GCC diagnostic ignored "-Wpedantic" /* the address of a procedure, as an object's */

/* Whether this call is to fail; then errno is set. */
static int fails(const char* call)
{
    static int calls = 0;
    const char* faulty = getenv("FAULT_CALL");
    if (faulty == NULL || strcmp(faulty, call) != 0) {
        return 0;
    }
    const int number = atoi(getenv("FAULT_NUMBER"));
    ++calls;
    if (calls != number && (calls < number || getenv("FAULT_AGAIN") == NULL)) {
        return 0;
    }
    syscall(SYS_write, STDERR_FILENO, "[fault]", 7);
    errno = atoi(getenv("FAULT_ERROR"));
    return 1;
}

static void* real(const char* call)
{
    return dlsym(RTLD_NEXT, call);
}

static int open_with(const char* call, int folder, const char* path, int flags, mode_t mode)
{
    int (*real_openat)(int, const char*, int, ...) = real(call);
    if ((flags & O_TMPFILE) == O_TMPFILE && getenv("NO_UNNAMED") != NULL) {
        errno = EOPNOTSUPP;
        return -1;
    }
    return fails("open") ? -1 : real_openat(folder, path, flags, mode);
}

static mode_t mode_of(int flags, va_list arguments)
{
    return (flags & (O_CREAT | __O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
}

#define OPENS(name, before, folder, real_name)                                                                         \
    int name(before const char* path, int flags, ...)                                                                  \
    {                                                                                                                  \
        va_list arguments;                                                                                             \
        va_start(arguments, flags);                                                                                    \
        const int result = open_with(real_name, folder, path, flags, mode_of(flags, arguments));                       \
        va_end(arguments);                                                                                             \
        return result;                                                                                                 \
    }
#define NOTHING
#define FOLDER int folder,
OPENS(open, NOTHING, AT_FDCWD, "openat")
OPENS(open64, NOTHING, AT_FDCWD, "openat64")
OPENS(openat, FOLDER, folder, "openat")
OPENS(openat64, FOLDER, folder, "openat64")

ssize_t write(int file, const void* bytes, size_t size)
{
    static int writes = 0;
    ssize_t (*real_write)(int, const void*, size_t) = real("write");
    if (file > STDERR_FILENO && getenv("SHORT_WRITES") != NULL) {
        if (++writes % 2 != 0) {
            errno = EINTR;
            return -1;
        }
        size = size < 1000 ? size : 1000;
    }
    return file > STDERR_FILENO && fails("write") ? -1 : real_write(file, bytes, size);
}

int close(int file)
{
    int (*real_close)(int) = real("close");
    const int result = real_close(file); /* a failing close closes too */
    return file > STDERR_FILENO && fails("close") ? -1 : result;
}

int fsync(int file)
{
    int (*real_fsync)(int) = real("fsync");
    return fails("fsync") ? -1 : real_fsync(file);
}

int fchmod(int file, mode_t mode)
{
    int (*real_fchmod)(int, mode_t) = real("fchmod");
    return fails("fchmod") ? -1 : real_fchmod(file, mode);
}

int fsetxattr(int file, const char* name, const void* value, size_t size, int flags)
{
    int (*real_fsetxattr)(int, const char*, const void*, size_t, int) = real("fsetxattr");
    return fails("fsetxattr") ? -1 : real_fsetxattr(file, name, value, size, flags);
}

int linkat(int from_folder, const char* from, int to_folder, const char* to, int flags)
{
    int (*real_linkat)(int, const char*, int, const char*, int) = real("linkat");
    return fails("linkat") ? -1 : real_linkat(from_folder, from, to_folder, to, flags);
}

int renameat(int from_folder, const char* from, int to_folder, const char* to)
{
    int (*real_renameat)(int, const char*, int, const char*) = real("renameat");
    return fails("renameat") ? -1 : real_renameat(from_folder, from, to_folder, to);
}

int mkdirat(int folder, const char* path, mode_t mode)
{
    int (*real_mkdirat)(int, const char*, mode_t) = real("mkdirat");
    const char* exchanged = getenv("EXCHANGED");
    const int result = fails("mkdirat") ? -1 : real_mkdirat(folder, path, mode);
    if (result == 0 && exchanged != NULL) {
        (void)renameat2(AT_FDCWD, exchanged, folder, path, RENAME_EXCHANGE);
    }
    return result;
}
