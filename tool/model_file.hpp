#pragma once

#include "model/model.hpp"
#include "model_store/model_store.hpp"
#include "tool/file_name.hpp"

#include <CLI/CLI.hpp>

#include <functional>
#include <string>

namespace velm {

/// Throws ToolError (usage) for a file name that stands for a stream or for nothing. `argument` is its name in
/// the help, `reason` says why a stream cannot take its place.
void refuse_stream(const FileName& file, const std::string& argument, const std::string& reason);

/// Loads the model that a command was given, with the rows counted on a terminal unless `quiet`. Whatever keeps it
/// from being read is a ToolError (model_unreadable) whose text lists all that was found.
[[nodiscard]] Model read_model_file(const FileName& database, bool quiet);

/// The same of a copy that the SQL of the file `changes`, if there is one, has changed. Says on standard error which
/// statement changed no row, unless `quiet`.
[[nodiscard]] Model read_changed_model_file(const FileName& database, const FileName& changes, bool quiet);

/// The store's words: below a line that names the file, or alone when they are about the file as a whole.
[[nodiscard]] std::string problems_text(const std::string& heading, const StoreError& error);

/// The database that a command creates.
struct NewModelFile {
    FileName name;
    bool quiet = false;

    /// Adds the arguments that fill these members.
    void add_to(CLI::App& arguments);
    /// Has `create` make the file and, unless `quiet`, says what it is. Throws FileError when the file exists already,
    /// ToolError (failed) when it cannot be made.
    void create(const std::function<void()>& create, const std::string& what) const;
};

} // namespace velm
