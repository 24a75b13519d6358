#include "record_output/output_file.hpp"

#include <algorithm>
#include <cstring>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace velm {
namespace {

HANDLE handle_of(std::intptr_t handle)
{
    return reinterpret_cast<HANDLE>(handle);
}

/// The system's words for `error`, in English where the system has it, without the line end. Returns their length.
DWORD describe(DWORD error, char* text, DWORD room)
{
    constexpr DWORD from_system = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    DWORD length =
        FormatMessageA(from_system, nullptr, error, MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), text, room, nullptr);
    if (length == 0) {
        length = FormatMessageA(from_system, nullptr, error, 0, text, room, nullptr);
    }
    while (length != 0 && std::strchr(" \r\n", text[length - 1]) != nullptr) {
        --length;
    }
    text[length] = '\0';
    return length;
}

[[noreturn]] void fail(const char* operation, DWORD error)
{
    char message[ExportFailure::message_room] = {};
    const DWORD length = describe(error, message, sizeof message);
    throw ExportFailure(operation, length != 0 ? message : "unknown error");
}

/// Returns 0 or the error number.
DWORD write_all(HANDLE file, const char* bytes, std::size_t size) noexcept
{
    constexpr std::size_t most_at_once = std::size_t{1} << 30U;
    while (size != 0) {
        DWORD written = 0;
        if (WriteFile(file, bytes, static_cast<DWORD>(std::min(size, most_at_once)), &written, nullptr) == 0) {
            return GetLastError();
        }
        if (written == 0) {
            return ERROR_WRITE_FAULT; // a device that takes nothing would be asked for ever
        }
        bytes += written;
        size -= written;
    }
    return ERROR_SUCCESS;
}

} // namespace

void SystemFile::let_go() noexcept
{
    if (handle_ != none) {
        CloseHandle(handle_of(handle_));
        handle_ = none;
    }
}

void SystemFile::open(const char* path)
{
    // others may read the file, and remove it: who started the export may be called off
    const HANDLE file = CreateFileA(path, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        fail("OPEN", GetLastError());
    }
    handle_ = reinterpret_cast<std::intptr_t>(file);
}

void SystemFile::write(const char* bytes, std::size_t size)
{
    if (const DWORD error = write_all(handle_of(handle_), bytes, size); error != ERROR_SUCCESS) {
        fail("WRITE", error);
    }
}

void SystemFile::close()
{
    const HANDLE file = handle_of(handle_);
    handle_ = none;
    // a disk may take bytes that it cannot keep, and says so only when it must; pipes and devices keep nothing
    const bool kept = GetFileType(file) != FILE_TYPE_DISK || FlushFileBuffers(file) != 0;
    const DWORD error = kept ? ERROR_SUCCESS : GetLastError();
    if (CloseHandle(file) == 0 && kept) {
        fail("CLOSE", GetLastError());
    }
    if (!kept) {
        fail("CLOSE", error);
    }
}

void write_to_standard_error(const char* text) noexcept
{
    const HANDLE stream = GetStdHandle(STD_ERROR_HANDLE);
    if (stream != nullptr && stream != INVALID_HANDLE_VALUE) { // a desktop program has none
        write_all(stream, text, std::strlen(text));
    }
}

} // namespace velm
