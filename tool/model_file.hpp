#pragma once

#include "model/model.hpp"
#include "model_store/model_store.hpp"

#include <functional>
#include <string>

namespace velm {

/// Throws ToolError (usage) for a file name that stands for a stream or for nothing. `argument` is its name in
/// the help, `reason` says why a stream cannot take its place.
void refuse_stream(const std::string& file, const std::string& argument, const std::string& reason);

/// Loads the model that a command was given, with the rows counted on a terminal unless `quiet`. Whatever keeps it
/// from being read is a ToolError (model_unreadable) whose text lists all that was found.
[[nodiscard]] Model read_model_file(const std::string& database, bool quiet);

/// The store's words: below a line that names the file, or alone when they are about the file as a whole.
[[nodiscard]] std::string problems_text(const std::string& heading, const StoreError& error);

/// Temporary files for a new database that are removed however the process ends.
[[nodiscard]] TemporaryFiles watched_temporary_files();

/// Has `create` make a new model database and says so. Throws ToolError: usage when `database` exists already,
/// failed when it cannot be made.
void create_model_file(const std::string& database, const std::function<void()>& create, const std::string& what);

} // namespace velm
