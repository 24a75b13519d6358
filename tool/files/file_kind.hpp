#pragma once

#include "tool/files/file_name.hpp"

namespace velm {

enum class FileKind { input_file, database };

/// What a file is, by its first bytes. Throws ToolError: usage for what stands for a stream or for nothing,
/// model_unreadable for what cannot be read or is neither.
[[nodiscard]] FileKind kind_of_file(const FileName& file);

/// Throws ToolError (usage) when a file that is to be written is there and is a model database, or an input file where
/// none is written: most likely the arguments were mistaken.
void refuse_to_replace_model(const FileName& output, bool by_input_file);

} // namespace velm
