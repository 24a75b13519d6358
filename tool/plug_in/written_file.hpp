#pragma once

#include "tool/files/file_name.hpp"

#include <cstdint>
#include <filesystem>
#include <string>

namespace velm {

/// What an input file holds, counted by reading it.
struct WrittenFile {
    std::uint64_t sections = 0; ///< lines that open a section
    std::uint64_t records = 0;  ///< complete lines
    std::uint64_t bytes = 0;
    bool has_asterisks = false;
    bool readable = false;
    bool ends_in_line = true; ///< false when characters follow the last complete line

    /// What an input file has and this one lacks; empty when nothing.
    [[nodiscard]] std::string incompleteness() const;
};

/// Of an output that a command which fails does not write: "out.inp is as it was", where there is one.
[[nodiscard]] std::string still(const FileName& output);

[[nodiscard]] WrittenFile read_written_file(const std::filesystem::path& file);

} // namespace velm
