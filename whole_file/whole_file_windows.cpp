#include "whole_file/whole_file.hpp"

#include "plain_text/plain_text.hpp"
#include "whole_file/system_errors_windows.hpp"

#include <array>
#include <csignal>
#include <cstdlib>
#include <random>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <sddl.h>

namespace velm {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const std::string& what, const fs::path& file)
{
    throw std::system_error(static_cast<int>(GetLastError()), windows_errors(), what + ' ' + shown(file));
}

/// What a user can do about it is his to know before anything is done; a full disk is a failure.
[[noreturn]] void fail_to_make(const fs::path& name)
{
    const DWORD error = GetLastError();
    const std::string reason = shown(name) + " cannot be made: " + windows_errors().message(static_cast<int>(error));
    switch (error) {
    case ERROR_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT: throw FileError(reason + "; allow writing to its folder, or name another");
    case ERROR_INVALID_NAME:
    case ERROR_FILENAME_EXCED_RANGE:
    case ERROR_PATH_NOT_FOUND: throw FileError(reason + "; give another name");
    default: fail("cannot make", name);
    }
}

constexpr DWORD with_everybody = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

HANDLE open_existing(const fs::path& file, DWORD access)
{
    return CreateFileW(file.c_str(), access, with_everybody, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
}

/// The files that the end of the process removes. The system calls a console handler on a thread of its own.
SRWLOCK unfinished_lock = SRWLOCK_INIT;
std::vector<fs::path> unfinished;

class UnfinishedLocked {
public:
    UnfinishedLocked() { AcquireSRWLockExclusive(&unfinished_lock); }
    ~UnfinishedLocked() { ReleaseSRWLockExclusive(&unfinished_lock); }
    UnfinishedLocked& operator=(UnfinishedLocked&&) = delete; // neither copied nor moved
};

/// Allocates nothing and waits for nobody: it may run after a crash.
void remove_unfinished()
{
    if (TryAcquireSRWLockExclusive(&unfinished_lock) != 0) {
        for (const fs::path& file : unfinished) {
            DeleteFileW(file.c_str());
        }
        ReleaseSRWLockExclusive(&unfinished_lock);
    }
}

void take_endings_once()
{
    static bool taken = false;
    if (std::exchange(taken, true)) {
        return;
    }
    (void)std::atexit(remove_unfinished); // a plug-in may call exit
    SetConsoleCtrlHandler(
        [](DWORD) -> BOOL {
            remove_unfinished();
            ExitProcess(STATUS_CONTROL_C_EXIT); // as the system's own handler does
        },
        TRUE);
    SetUnhandledExceptionFilter([](EXCEPTION_POINTERS*) -> LONG {
        remove_unfinished();
        return EXCEPTION_CONTINUE_SEARCH;
    });
    (void)std::signal(SIGABRT, [](int) { remove_unfinished(); });
}

/// Full access for the user of this process and for nobody else, in the system's notation. Empty when it does not say.
std::wstring for_this_user_alone()
{
    HANDLE token = nullptr;
    OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token);
    alignas(TOKEN_USER) std::array<std::byte, sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE> user{};
    DWORD size = 0;
    wchar_t* name = nullptr;
    const bool known =
        GetTokenInformation(token, TokenUser, user.data(), static_cast<DWORD>(user.size()), &size) != 0 &&
        ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER*>(user.data())->User.Sid, &name) != 0;
    if (token != nullptr) {
        CloseHandle(token);
    }
    if (!known) {
        return {};
    }
    std::wstring access = std::wstring(L"D:P(A;;FA;;;") + name + L")";
    LocalFree(name);
    return access;
}

/// Makes a new file, for this user alone unless `for_others`: then the folder says who may read it.
bool make_new(const fs::path& file, bool for_others)
{
    SECURITY_ATTRIBUTES security{sizeof(SECURITY_ATTRIBUTES), nullptr, FALSE};
    if (!for_others &&
        ConvertStringSecurityDescriptorToSecurityDescriptorW(for_this_user_alone().c_str(), SDDL_REVISION_1,
                                                             &security.lpSecurityDescriptor, nullptr) == 0) {
        fail("cannot protect", file);
    }
    const HANDLE made =
        CreateFileW(file.c_str(), GENERIC_READ, with_everybody, &security, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    const DWORD error = GetLastError();
    LocalFree(security.lpSecurityDescriptor);
    if (made != INVALID_HANDLE_VALUE) {
        CloseHandle(made);
    }
    SetLastError(error);
    return made != INVALID_HANDLE_VALUE;
}

void keep_permissions(const fs::path& from, const fs::path& to)
{
    constexpr SECURITY_INFORMATION permissions = DACL_SECURITY_INFORMATION;
    DWORD size = 0;
    GetFileSecurityW(from.c_str(), permissions, nullptr, 0, &size);
    std::vector<std::byte> descriptor(size);
    if (GetFileSecurityW(from.c_str(), permissions, descriptor.data(), size, &size) == 0 ||
        SetFileSecurityW(to.c_str(), permissions, descriptor.data()) == 0) {
        fail("cannot keep the permissions of", from);
    }
}

void write_through(const fs::path& file, const fs::path& name)
{
    const HANDLE opened = open_existing(file, GENERIC_WRITE);
    const bool written = opened != INVALID_HANDLE_VALUE && FlushFileBuffers(opened) != 0;
    const DWORD error = GetLastError();
    if (opened != INVALID_HANDLE_VALUE) {
        CloseHandle(opened);
    }
    if (!written) {
        SetLastError(error);
        fail("cannot write to the disk", name);
    }
}

void refuse_write_protected(const fs::path& name, const fs::path& place)
{
    const HANDLE opened = open_existing(place, GENERIC_WRITE);
    if (opened == INVALID_HANDLE_VALUE) {
        throw FileError(shown(name) + " is write-protected; allow writing to it, or name another file");
    }
    CloseHandle(opened);
}

} // namespace

/// An unnamed file cannot get a name here, and a folder's rights keep others out: a new name beside the place does.
struct WholeFile::Making {
    fs::path file;

    Making(const fs::path& name, const fs::path& place, bool for_others);
    ~Making()
    {
        const UnfinishedLocked locked;
        if (std::erase(unfinished, file) != 0) {
            DeleteFileW(file.c_str());
        }
    }
    Making& operator=(Making&&) = delete; // neither copied nor moved
};

WholeFile::Making::Making(const fs::path& name, const fs::path& place, bool for_others)
{
    take_endings_once();
    std::random_device random;
    for (int attempt = 0; attempt < 100; ++attempt) {
        file = place.parent_path() / (".velm-" + hexadecimal(random(), 8) + hexadecimal(random(), 8));
        const UnfinishedLocked locked;
        unfinished.push_back(file);
        if (make_new(file, for_others)) {
            return;
        }
        unfinished.pop_back();
        if (GetLastError() != ERROR_FILE_EXISTS) {
            break;
        }
    }
    fail_to_make(name);
}

WholeFile::WholeFile(const fs::path& name, Standing standing)
    : name_(name), place_(real_place(name)), standing_(standing)
{
    refuse_unless_free(name_, place_, standing);
    const bool exists = fs::exists(place_);
    if (exists) {
        refuse_write_protected(name_, place_);
    }
    making_ = std::make_unique<Making>(name_, place_, !exists);
    content_ = making_->file;
}

WholeFile::WholeFile() : standing_(Standing::refused)
{
    std::error_code error;
    const fs::path folder = fs::temp_directory_path(error);
    if (error) {
        throw FileError("the folder for temporary files is none: " + error.message() + "; name one in TMP");
    }
    making_ = std::make_unique<Making>(folder, folder / "a temporary file", false);
    content_ = making_->file;
}

WholeFile::~WholeFile() = default;

void WholeFile::put_in_place()
{
    write_through(content_, name_);
    if (fs::exists(place_) && standing_ == Standing::replaced) {
        keep_permissions(place_, content_);
    }
    const DWORD how = MOVEFILE_WRITE_THROUGH | (standing_ == Standing::replaced ? MOVEFILE_REPLACE_EXISTING : 0U);
    const UnfinishedLocked locked;
    if (MoveFileExW(content_.c_str(), place_.c_str(), how) == 0) {
        const DWORD error = GetLastError();
        refuse_unless_free(name_, place_, standing_);
        SetLastError(error);
        fail("cannot give the name", name_);
    }
    std::erase(unfinished, content_);
}

} // namespace velm
