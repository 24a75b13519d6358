#pragma once

#include <chrono>
#include <cstddef>
#include <dlfcn.h>
#include <fcntl.h>
#include <fstream>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace velm::bench {

/// The plug-in's procedure, from a library loaded as a host loads it. It stays loaded.
inline auto importexport_of(const std::string& library)
{
    void* const handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
    void* const procedure = handle != nullptr ? dlsym(handle, "importexport") : nullptr;
    if (procedure == nullptr) {
        throw std::runtime_error(dlerror());
    }
    return reinterpret_cast<void (*)()>(procedure);
}

template <class Work>
double seconds_of(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// 0 when there is no such file.
inline std::size_t size_of_file(const std::string& path)
{
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? static_cast<std::size_t>(status.st_size) : 0;
}

/// `size` bytes to a new file as fast as the system takes them: blocks of the size that an export hands on.
inline void write_blocks(const std::string& path, std::size_t size)
{
    static const std::vector<char> block(std::size_t{256} * 1024, '5');
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    while (size != 0) {
        const ssize_t written = write(file, block.data(), size < block.size() ? size : block.size());
        if (written <= 0) {
            throw std::runtime_error("cannot write " + path);
        }
        size -= static_cast<std::size_t>(written);
    }
    if (close(file) != 0) {
        throw std::runtime_error("cannot close " + path);
    }
}

/// Bytes of memory that the process has held at most so far.
inline std::size_t peak_memory()
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmHWM:") {
            std::size_t kibibytes = 0;
            status >> kibibytes;
            return kibibytes * 1024;
        }
    }
    throw std::runtime_error("/proc/self/status does not tell VmHWM");
}

} // namespace velm::bench
