#pragma once

#include <algorithm>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace velm {

inline constexpr std::size_t random_character_count = 6;

/// `beginning` and characters that make the name new.
[[nodiscard]] inline std::filesystem::path new_temporary_name(std::filesystem::path beginning)
{
    constexpr std::string_view characters = "abcdefghijklmnopqrstuvwxyz0123456789";
    std::random_device source;
    std::uniform_int_distribution<std::size_t> pick(0, characters.size() - 1);
    std::string random(random_character_count, ' ');
    std::generate(random.begin(), random.end(), [&] { return characters[pick(source)]; });
    return beginning += random;
}

/// The files that stand under such names; none where the directory cannot be read.
[[nodiscard]] inline std::vector<std::filesystem::path> temporary_files_of(const std::filesystem::path& beginning)
{
    namespace fs = std::filesystem;
    std::vector<fs::path> files;
    const fs::path::string_type start = beginning.filename().native();
    const fs::path directory = beginning.has_parent_path() ? beginning.parent_path() : ".";
    std::error_code unreadable;
    for (fs::directory_iterator entry(directory, unreadable), end; entry != end; entry.increment(unreadable)) {
        const fs::path::string_type name = entry->path().filename().native();
        if (name.size() == start.size() + random_character_count && name.starts_with(start)) {
            files.push_back(entry->path());
        }
    }
    return files;
}

} // namespace velm
