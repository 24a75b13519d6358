#include "tool/operating_system.hpp"

#include "tool/temporary_name.hpp"

#include <array>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <sddl.h>

namespace velm {
namespace {

namespace fs = std::filesystem;

/// The C++ library has words for a few of the system's errors only.
class SystemErrors : public std::error_category {
public:
    [[nodiscard]] const char* name() const noexcept override { return "windows"; }
    [[nodiscard]] std::string message(int error) const override
    {
        constexpr DWORD from_system = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
        const auto number = static_cast<DWORD>(error);
        std::array<char, 512> text{};
        constexpr auto room = static_cast<DWORD>(text.size());
        if (FormatMessageA(from_system, nullptr, number, MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), text.data(),
                           room, nullptr) == 0) {
            FormatMessageA(from_system, nullptr, number, 0, text.data(), room, nullptr);
        }
        const std::string_view words(text.data());
        const auto end = words.find_last_not_of(" .\r\n");
        return end == std::string_view::npos ? "error " + std::to_string(number)
                                             : std::string(words.substr(0, end + 1));
    }
};

[[noreturn]] void fail(const std::string& what, const fs::path& file)
{
    static const SystemErrors errors;
    throw std::system_error(static_cast<int>(GetLastError()), errors, what + " " + file.string());
}

class Handle {
public:
    explicit Handle(HANDLE opened) : handle(opened) {}
    ~Handle()
    {
        if (valid()) {
            CloseHandle(handle);
        }
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    Handle(Handle&& other) noexcept : handle(std::exchange(other.handle, INVALID_HANDLE_VALUE)) {}
    Handle& operator=(Handle&& other) noexcept
    {
        std::swap(handle, other.handle);
        return *this;
    }

    [[nodiscard]] bool valid() const { return handle != INVALID_HANDLE_VALUE; }
    [[nodiscard]] HANDLE get() const { return handle; }

private:
    HANDLE handle;
};

constexpr DWORD with_everybody = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

HANDLE open_existing(const fs::path& file, DWORD access)
{
    return CreateFileW(file.c_str(), access, with_everybody, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
}

struct TemporaryFile {
    fs::path name; ///< absolute
    Handle lock;   ///< says to others that somebody uses the file; for reading, so that a plug-in may let nobody write
};

/// The system calls a console handler on a thread of its own.
SRWLOCK temporary_files_lock = SRWLOCK_INIT;
std::vector<TemporaryFile> temporary_files; ///< to be removed when the process ends

class TemporaryFilesLocked {
public:
    TemporaryFilesLocked() { AcquireSRWLockExclusive(&temporary_files_lock); }
    ~TemporaryFilesLocked() { ReleaseSRWLockExclusive(&temporary_files_lock); }
    TemporaryFilesLocked(const TemporaryFilesLocked&) = delete;
    TemporaryFilesLocked& operator=(const TemporaryFilesLocked&) = delete;
    TemporaryFilesLocked(TemporaryFilesLocked&&) = delete;
    TemporaryFilesLocked& operator=(TemporaryFilesLocked&&) = delete;
};

void forget(const fs::path& absolute_name)
{
    std::erase_if(temporary_files, [&](const TemporaryFile& file) { return file.name == absolute_name; });
}

/// Allocates nothing and waits for nobody: it may run after a crash.
void remove_temporary_files()
{
    if (TryAcquireSRWLockExclusive(&temporary_files_lock) != 0) {
        for (const TemporaryFile& file : temporary_files) {
            DeleteFileW(file.name.c_str());
        }
        ReleaseSRWLockExclusive(&temporary_files_lock);
    }
}

void take_endings_once()
{
    static bool taken = false;
    if (std::exchange(taken, true)) {
        return;
    }
    (void)std::atexit(remove_temporary_files); // a plug-in may call exit
    SetConsoleCtrlHandler(
        [](DWORD) -> BOOL {
            remove_temporary_files();
            ExitProcess(STATUS_CONTROL_C_EXIT); // as the system's own handler does
        },
        TRUE);
    SetUnhandledExceptionFilter([](EXCEPTION_POINTERS*) -> LONG {
        remove_temporary_files();
        return EXCEPTION_CONTINUE_SEARCH;
    });
    (void)std::signal(SIGABRT, [](int) { remove_temporary_files(); });
}

/// Full access for the user of this process and for nobody else, in the system's notation. Empty when it does not say.
std::wstring for_this_user_alone()
{
    HANDLE token = INVALID_HANDLE_VALUE;
    OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token);
    const Handle opened(token);
    alignas(TOKEN_USER) std::array<std::byte, sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE> user{};
    DWORD size = 0;
    wchar_t* name = nullptr;
    if (GetTokenInformation(token, TokenUser, user.data(), static_cast<DWORD>(user.size()), &size) == 0 ||
        ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER*>(user.data())->User.Sid, &name) == 0) {
        return {};
    }
    std::wstring access = std::wstring(L"D:P(A;;FA;;;") + name + L")";
    LocalFree(name);
    return access;
}

/// Opens a new file, for this user alone unless `for_others`: then the directory says who may read it.
HANDLE create_new(const fs::path& file, bool for_others)
{
    SECURITY_ATTRIBUTES security{sizeof(SECURITY_ATTRIBUTES), nullptr, FALSE};
    if (!for_others &&
        ConvertStringSecurityDescriptorToSecurityDescriptorW(for_this_user_alone().c_str(), SDDL_REVISION_1,
                                                             &security.lpSecurityDescriptor, nullptr) == 0) {
        fail("cannot protect", file);
    }
    const HANDLE created =
        CreateFileW(file.c_str(), GENERIC_READ, with_everybody, &security, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    const DWORD error = GetLastError();
    LocalFree(security.lpSecurityDescriptor);
    SetLastError(error);
    return created;
}

void copy_permissions(const fs::path& from, const fs::path& to)
{
    constexpr SECURITY_INFORMATION permissions = DACL_SECURITY_INFORMATION;
    DWORD size = 0;
    GetFileSecurityW(from.c_str(), permissions, nullptr, 0, &size);
    std::vector<std::byte> descriptor(size);
    if (GetFileSecurityW(from.c_str(), permissions, descriptor.data(), size, &size) == 0 ||
        SetFileSecurityW(to.c_str(), permissions, descriptor.data()) == 0) {
        fail("cannot set the permissions of", to);
    }
}

/// A place far behind the end of any file is locked: a lock keeps others from what it covers. It ends with its process.
bool take_lock(const Handle& file)
{
    OVERLAPPED place{};
    place.OffsetHigh = 0x40000000;
    return LockFileEx(file.get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) != 0;
}

/// Removes what processes that were ended from outside have left. What cannot be looked at or locked stays.
void remove_abandoned(const fs::path& beginning)
{
    for (const fs::path& file : temporary_files_of(beginning)) {
        const Handle opened(open_existing(file, GENERIC_READ));
        if (opened.valid() && take_lock(opened)) {
            DeleteFileW(file.c_str());
        }
    }
}

void write_through(const fs::path& file)
{
    const Handle opened(open_existing(file, GENERIC_WRITE));
    if (!opened.valid() || FlushFileBuffers(opened.get()) == 0) {
        fail("cannot write to the disk", file);
    }
}

/// The tool prints UTF-8; afterwards the console has the code page that it had.
class ConsoleInUtf8 {
public:
    ConsoleInUtf8() : before(GetConsoleOutputCP()) { SetConsoleOutputCP(CP_UTF8); }
    ~ConsoleInUtf8() { SetConsoleOutputCP(before); }
    ConsoleInUtf8(const ConsoleInUtf8&) = delete;
    ConsoleInUtf8& operator=(const ConsoleInUtf8&) = delete;
    ConsoleInUtf8(ConsoleInUtf8&&) = delete;
    ConsoleInUtf8& operator=(ConsoleInUtf8&&) = delete;

private:
    UINT before;
};
const ConsoleInUtf8 console_in_utf8;

} // namespace

fs::path executable_directory()
{
    std::wstring name(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
        if (length == 0) {
            fail("cannot find", "the program's own file");
        }
        if (length < name.size()) {
            return fs::path(name.substr(0, length)).parent_path();
        }
        name.resize(2 * name.size());
    }
}

bool has_capable_terminal()
{
    const HANDLE console = GetStdHandle(STD_ERROR_HANDLE);
    DWORD mode = 0;
    return GetConsoleMode(console, &mode) != 0 &&
           SetConsoleMode(console, mode | ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

std::size_t terminal_columns()
{
    CONSOLE_SCREEN_BUFFER_INFO console{};
    const bool known = GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &console) != 0;
    const int columns = console.srWindow.Right - console.srWindow.Left + 1;
    return known && columns > 1 ? static_cast<std::size_t>(columns) : 80;
}

void (*procedure_of_library(const fs::path& library, const char* name))()
{
    const HMODULE module = LoadLibraryW(fs::absolute(library).c_str());
    const FARPROC procedure = module == nullptr ? nullptr : GetProcAddress(module, name);
    if (procedure == nullptr) {
        throw std::runtime_error(SystemErrors().message(static_cast<int>(GetLastError())));
    }
    return reinterpret_cast<void (*)()>(reinterpret_cast<void*>(procedure));
}

bool may_write(const fs::path& existing_file)
{
    return Handle(open_existing(existing_file, GENERIC_WRITE)).valid();
}

fs::path create_temporary_file(const fs::path& beginning, bool for_others)
{
    take_endings_once();
    remove_abandoned(beginning);
    for (int attempt = 0; attempt < 100; ++attempt) {
        fs::path file = new_temporary_name(beginning);
        const TemporaryFilesLocked locked;
        temporary_files.push_back({fs::absolute(file), Handle(INVALID_HANDLE_VALUE)});
        Handle created(create_new(file, for_others));
        const DWORD error = created.valid() ? ERROR_FILE_EXISTS : GetLastError();
        // another run may have taken the new file for an abandoned one; where files cannot be locked it is ours
        // unlocked
        if (created.valid() && (take_lock(created) || GetLastError() != ERROR_LOCK_VIOLATION) &&
            GetFileAttributesW(file.c_str()) != INVALID_FILE_ATTRIBUTES) {
            temporary_files.back().lock = std::move(created);
            return file;
        }
        temporary_files.pop_back();
        if (error != ERROR_FILE_EXISTS) {
            SetLastError(error);
            fail("cannot create", file);
        }
    }
    fail("cannot create", beginning);
}

void put_in_place(const fs::path& temporary, const fs::path& file)
{
    write_through(temporary);
    if (fs::exists(file)) {
        copy_permissions(file, temporary);
    }
    const fs::path registered = fs::absolute(temporary);
    const TemporaryFilesLocked locked;
    if (MoveFileExW(temporary.c_str(), file.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) == 0) {
        fail("cannot replace", file);
    }
    forget(registered);
}

void discard(const fs::path& temporary) noexcept
{
    const TemporaryFilesLocked locked;
    DeleteFileW(temporary.c_str());
    try {
        forget(fs::absolute(temporary));
    } catch (...) { // out of storage: the file is removed all the same, and once more at the end
    }
}

} // namespace velm
