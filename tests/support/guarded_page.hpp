#pragma once

#include <cstddef>

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#else
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace velm {

/// Storage that ends where nothing may be read: whoever reads one byte more ends the test.
class GuardedPage {
public:
    GuardedPage& operator=(GuardedPage&&) = delete; // neither copied nor moved

    /// One page lies before it; nullptr when the system gave none.
    [[nodiscard]] char* end() const { return end_; }

#if defined(_WIN32)
    GuardedPage()
    {
        SYSTEM_INFO system;
        GetSystemInfo(&system);
        pages_ = VirtualAlloc(nullptr, 2 * system.dwPageSize, MEM_RESERVE, PAGE_NOACCESS);
        if (VirtualAlloc(pages_, system.dwPageSize, MEM_COMMIT, PAGE_READWRITE) != nullptr) {
            end_ = static_cast<char*>(pages_) + system.dwPageSize;
        }
    }
    ~GuardedPage()
    {
        VirtualFree(pages_, 0, MEM_RELEASE);
    }
#else
    GuardedPage()
        : size_(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))),
          pages_(mmap(nullptr, 2 * size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))
    {
        if (pages_ != MAP_FAILED && mprotect(static_cast<char*>(pages_) + size_, size_, PROT_NONE) == 0) {
            end_ = static_cast<char*>(pages_) + size_;
        }
    }
    ~GuardedPage()
    {
        munmap(pages_, 2 * size_);
    }
#endif

private:
#if !defined(_WIN32)
    std::size_t size_;
#endif
    void* pages_;
    char* end_ = nullptr;
};

} // namespace velm
