#pragma once

#include "tool/files/file_name.hpp"

namespace velm {

enum class FileKind { input_file, database };

/// What a file is, by its first bytes. Throws ToolError: usage for what stands for a stream or for nothing,
/// model_unreadable for what cannot be read or is neither.
[[nodiscard]] FileKind kind_of_file(const FileName& file);

} // namespace velm
