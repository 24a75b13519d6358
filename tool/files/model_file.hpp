#pragma once

#include "model/finding.hpp"
#include "model/model.hpp"
#include "model_store/model_store.hpp"
#include "tool/files/file_kind.hpp"
#include "tool/files/file_name.hpp"

#include <CLI/CLI.hpp>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>
#include <string>

namespace velm {

/// Throws ToolError (usage) for a file name that stands for a stream or for nothing. `argument` is its name in
/// the help, `reason` says why a stream cannot take its place.
void refuse_stream(const FileName& file, const std::string& argument, const std::string& reason);

/// The model that a file holds, and what its reader found.
struct ModelFile {
    Model model;
    FileKind kind{};
    std::uint64_t errors = 0;   ///< places of an input file that cannot be read
    std::string first_errors{}; ///< a list_of_problems()
};

struct ModelFileOptions {
    bool quiet = false;         ///< no progress on the terminal, and nothing about changes
    FileName changes{};         ///< SQL that a private copy of the database is changed by; empty: none
    bool unsure_values = false; ///< also take an input file of which not all values can be read
};

/// Loads the model that a command was given, from a database or an input file. Whatever keeps it from being read is a
/// ToolError (model_unreadable) whose text lists all that was found.
[[nodiscard]] ModelFile read_model_file(const FileName& file, const ModelFileOptions& options = {});

/// The same from what is known to be an input file, which messages call `name`.
[[nodiscard]] ModelFile read_input_model(const std::filesystem::path& file, const std::string& name,
                                         const ModelFileOptions& options = {});

/// The store's words: below a line that names the file, or alone when they are about the file as a whole.
[[nodiscard]] std::string problems_text(const std::string& heading, const StoreError& error);

/// A line for each problem in an input file, after a line end, and one for those of `count` that are not listed.
[[nodiscard]] std::string list_of_problems(const std::string& file, std::span<const Finding> problems,
                                           std::uint64_t count);

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
