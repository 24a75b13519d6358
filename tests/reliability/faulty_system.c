/*
 * Stands before the system's own calls (LD_PRELOAD) and lets one kind of them fail:
 *
 *   FAULT_CALL    open, write, fsync, chmod, rename or close
 *   FAULT_NUMBER  which of the process's calls of this kind, from 1; standard streams do not count
 *   FAULT_ERROR   the error number
 *   FAULT_AGAIN   set: all later ones fail too
 *   SHORT_WRITES  set: every second write is interrupted, the others take a thousand bytes at most
 *
 * A fault that has come is told on standard error: [fault].
 */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/types.h>
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

static int open_with(const char* call, const char* path, int flags, mode_t mode)
{
    int (*real_open)(const char*, int, ...) = real(call);
    return fails("open") ? -1 : real_open(path, flags, mode);
}

int open(const char* path, int flags, ...)
{
    va_list mode;
    va_start(mode, flags);
    const int result = open_with("open", path, flags, (flags & O_CREAT) != 0 ? va_arg(mode, mode_t) : 0);
    va_end(mode);
    return result;
}

int open64(const char* path, int flags, ...)
{
    va_list mode;
    va_start(mode, flags);
    const int result = open_with("open64", path, flags, (flags & O_CREAT) != 0 ? va_arg(mode, mode_t) : 0);
    va_end(mode);
    return result;
}

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

int chmod(const char* path, mode_t mode)
{
    int (*real_chmod)(const char*, mode_t) = real("chmod");
    return fails("chmod") ? -1 : real_chmod(path, mode);
}

int rename(const char* from, const char* to)
{
    int (*real_rename)(const char*, const char*) = real("rename");
    return fails("rename") ? -1 : real_rename(from, to);
}
