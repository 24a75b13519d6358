#pragma once

#include "model_store/model_store.hpp"
#include "model_store/sqlite_database.hpp"

#include <filesystem>
#include <functional>

namespace velm {

/// Whether rows may come before, or without, those that they refer to.
enum class ForeignKeys { bound, free };

/// Changes a database that nobody else has open, or creates it, in one transaction: `change` runs within. Throws
/// SqliteError, or what `change` throws.
void change_unshared(const std::filesystem::path& file, ForeignKeys keys,
                     const std::function<void(const Database&)>& change);

/// A new database, written into a temporary file until it gets its name; without that, no file is left.
class NewFile {
public:
    /// Throws StoreError when `file` exists and is not to be replaced, or nothing can be written there.
    NewFile(const std::filesystem::path& file, TemporaryFiles temporary_files);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    NewFile(NewFile&&) = delete;
    NewFile& operator=(NewFile&&) = delete;

    /// The temporary file.
    [[nodiscard]] const std::filesystem::path& unnamed() const { return unnamed_; }
    /// Takes a step; failures of SQLite and of the system become a StoreError about the file to come.
    void write(const std::function<void()>& step) const;
    /// Call when the file is whole and closed; once. Throws StoreError.
    void give_name() const;

private:
    std::filesystem::path file_;
    TemporaryFiles temporary_files_;
    std::filesystem::path unnamed_;
};

} // namespace velm
