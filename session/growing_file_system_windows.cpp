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

/// The file is given its size first, which reserves the block on the disk.
void GrowingFile::map_next_block()
{
    unmap_block();
    HANDLE const file = handle_of(handle_);
    const std::uint64_t end = mapped_end_ + block_size;
    if (!set_size(file, end)) {
        fail("cannot write");
    }
    const auto upper = [](std::uint64_t value) { return static_cast<DWORD>(value >> 32U); };
    const auto lower = [](std::uint64_t value) { return static_cast<DWORD>(value & 0xFFFFFFFFU); };
    HANDLE const mapping = CreateFileMappingW(file, nullptr, PAGE_READWRITE, upper(end), lower(end), nullptr);
    if (mapping == nullptr) {
        fail("cannot map");
    }
    block_ =
        static_cast<char*>(MapViewOfFile(mapping, FILE_MAP_WRITE, upper(mapped_end_), lower(mapped_end_), block_size));
    const DWORD reason = GetLastError();
    CloseHandle(mapping); // the view keeps it
    if (block_ == nullptr) {
        SetLastError(reason);
        fail("cannot map");
    }
    mapped_end_ = end;
    used_ = 0;
}

void GrowingFile::unmap_block() noexcept
{
    if (block_ != nullptr) {
        UnmapViewOfFile(block_);
        block_ = nullptr;
    }
}

void GrowingFile::close()
{
    if (handle_of(handle_) == INVALID_HANDLE_VALUE) {
        return;
    }
    const std::uint64_t size = mapped_end_ - (block_size - used_);
    unmap_block();
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
