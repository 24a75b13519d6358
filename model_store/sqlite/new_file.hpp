#pragma once

#include "model_store/model_store.hpp"
#include "model_store/sqlite/sqlite_database.hpp"
#include "whole_file/whole_file.hpp"

#include <filesystem>
#include <functional>

namespace velm {

/// Whether rows may come before, or without, those that they refer to.
enum class ForeignKeys { bound, free };

/// Changes a database that nobody else has open, or creates it, in one transaction: `change` runs within. Throws
/// SqliteError, or what `change` throws.
void change_unshared(const std::filesystem::path& file, ForeignKeys keys,
                     const std::function<void(const Database&)>& change);

/// A new database, which has no name until it is whole; without give_name(), no file is left.
class NewFile {
public:
    /// Throws FileError as save_model() does.
    NewFile(const std::filesystem::path& file, Standing standing);

    /// What to open until it has its name.
    [[nodiscard]] const std::filesystem::path& unnamed() const { return file_.content(); }
    /// Takes a step; failures of SQLite and of the system become a StoreError about the file to come.
    void write(const std::function<void()>& step) const;
    /// Call when the file is whole and closed; once. What kept it from being made is looked for once more, while
    /// nobody else can use the database that is replaced. Throws FileError and StoreError.
    void give_name();

private:
    WholeFile file_;
};

} // namespace velm
