#pragma once

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace velm {

/// A session file that is not as it must be. what() is "river.jsonl, line 57, column 12: ...".
class SessionError : public std::runtime_error {
public:
    SessionError(const std::filesystem::path& file, std::uint64_t line, std::uint64_t column, const std::string& words)
        : std::runtime_error(file.string() + ", line " + std::to_string(line) + ", column " + std::to_string(column) +
                             ": " + words)
    {
    }
};

} // namespace velm
