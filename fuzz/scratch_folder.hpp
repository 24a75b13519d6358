#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <unistd.h>

namespace velm {

/// A folder of this process, in memory where the system has such a place; gone with the process.
inline const std::filesystem::path& scratch_folder()
{
    namespace fs = std::filesystem;
    static const struct Folder {
        fs::path path = (fs::exists("/dev/shm") ? fs::path("/dev/shm") : fs::temp_directory_path()) /
                        ("velm_fuzz_" + std::to_string(getpid()));
        Folder() { fs::create_directories(path); }
        ~Folder() { fs::remove_all(path); }
        Folder& operator=(Folder&&) = delete; // neither copied nor moved
    } folder;
    return folder.path;
}

inline std::string content_of(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

inline void write_file(const std::filesystem::path& file, std::string_view bytes)
{
    std::ofstream(file, std::ios::binary) << bytes;
}

} // namespace velm
