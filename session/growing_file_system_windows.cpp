#include "session/growing_file.hpp"

#include <string>
#include <system_error>

#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace velm {
namespace {

HANDLE handle_of(std::intptr_t value)
{
    return reinterpret_cast<HANDLE>(value);
}

bool set_size(HANDLE file, std::uint64_t size)
{
    LARGE_INTEGER position;
    position.QuadPart = static_cast<LONGLONG>(size);
    return SetFilePointerEx(file, position, nullptr, FILE_BEGIN) != 0 && SetEndOfFile(file) != 0;
}

} // namespace

GrowingFile::GrowingFile(const std::filesystem::path& file)
    : file_(file),
      handle_(reinterpret_cast<std::intptr_t>(CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ,
                                                          nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr)))
{
    if (handle_of(handle_) == INVALID_HANDLE_VALUE) {
        fail("cannot create");
    }
}

/// Giving the file its size reserves the disk's room.
void GrowingFile::extend(std::uint64_t size)
{
    if (!set_size(handle_of(handle_), size)) {
        fail("cannot write");
    }
    size_ = size;
}

char* GrowingFile::map(std::uint64_t start, std::size_t size) const
{
    const auto upper = [](std::uint64_t value) { return static_cast<DWORD>(value >> 32U); };
    const auto lower = [](std::uint64_t value) { return static_cast<DWORD>(value & 0xFFFFFFFFU); };
    const std::uint64_t end = start + size;
    HANDLE const mapping =
        CreateFileMappingW(handle_of(handle_), nullptr, PAGE_READWRITE, upper(end), lower(end), nullptr);
    if (mapping == nullptr) {
        fail("cannot map");
    }
    void* const block = MapViewOfFile(mapping, FILE_MAP_WRITE, upper(start), lower(start), size);
    const DWORD reason = GetLastError();
    CloseHandle(mapping); // the view keeps it
    if (block == nullptr) {
        SetLastError(reason);
        fail("cannot map");
    }
    return static_cast<char*>(block);
}

void GrowingFile::unmap(char* block, std::size_t /*size*/) noexcept
{
    UnmapViewOfFile(block);
}

void GrowingFile::cut_and_close(std::uint64_t size)
{
    const bool cut = set_size(handle_of(handle_), size);
    const DWORD reason = GetLastError();
    const bool closed = CloseHandle(handle_of(handle_)) != 0;
    handle_ = -1;
    if (!cut || !closed) {
        SetLastError(cut ? GetLastError() : reason);
        fail("cannot close");
    }
}

void GrowingFile::fail(const char* what) const
{
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(),
                            std::string(what) + ' ' + file_.string());
}

} // namespace velm
