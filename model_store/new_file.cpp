#include "model_store/new_file.hpp"

#include "model_store/open_model.hpp"

#include <random>
#include <string>
#include <system_error>
#include <utility>

namespace velm {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const fs::path& file, std::string message, std::string remedy)
{
    throw StoreError({file_problem(file, std::move(message), std::move(remedy))}, false);
}

[[noreturn]] void fail_as_existing(const fs::path& file)
{
    fail(file, "exists already", "give another name, or remove the file first");
}

[[noreturn]] void fail_to_write(const fs::path& file, const std::string& reason)
{
    fail(file, "cannot be written: " + reason, "check that the folder exists, can be written to and has room");
}

class TemporaryFile {
public:
    TemporaryFile(const TemporaryFiles& files, const fs::path& database)
        : discard_(files.discard), path_(files.create(database))
    {
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    TemporaryFile(TemporaryFile&&) = delete;
    TemporaryFile& operator=(TemporaryFile&&) = delete;
    ~TemporaryFile() { discard_(path_); }

    [[nodiscard]] const fs::path& path() const { return path_; }

private:
    std::function<void(const fs::path& temporary)> discard_;
    fs::path path_;
};

/// A hard link fails where the name is taken, a rename would replace. File systems without links get the rename.
void give_name(const fs::path& written, const fs::path& file)
{
    std::error_code error;
    fs::create_hard_link(written, file, error);
    if (error && fs::exists(fs::symlink_status(file))) {
        fail_as_existing(file);
    }
    if (error) {
        fs::rename(written, file, error);
    }
    if (error) {
        fail(file, "cannot be written: " + error.message(), "choose a folder that can be written to");
    }
}

} // namespace

TemporaryFiles TemporaryFiles::plain()
{
    const auto create = [](fs::path database) {
        std::random_device random;
        return database += ".new-" + std::to_string(random()) + std::to_string(random());
    };
    const auto discard = [](const fs::path& temporary) {
        std::error_code ignored;
        fs::remove(temporary, ignored);
    };
    return {create, discard};
}

void change_unshared(const fs::path& file, ForeignKeys keys, const std::function<void(const Database&)>& change)
{
    const Database database(file, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    database.run(keys == ForeignKeys::bound ? "PRAGMA foreign_keys = ON" : "PRAGMA foreign_keys = OFF");
    // nobody else sees the file yet, so a journal on disk would protect nothing; save_rows() adds no pages that would
    // list the others, as automatic vacuuming needs them
    database.run("PRAGMA auto_vacuum = NONE; PRAGMA journal_mode = MEMORY; BEGIN");
    change(database);
    database.run("COMMIT");
}

void write_new_database(const fs::path& file, const TemporaryFiles& temporary_files,
                        const std::function<void(const fs::path& unnamed)>& write)
{
    if (!temporary_files.replace && fs::exists(fs::symlink_status(file))) {
        fail_as_existing(file);
    }
    try {
        const TemporaryFile temporary(temporary_files, file);
        write(temporary.path());
        if (temporary_files.replace) {
            temporary_files.replace(temporary.path(), file);
        } else {
            give_name(temporary.path(), file);
        }
    } catch (const SqliteError& error) {
        fail_to_write(file, error.what());
    } catch (const std::system_error& error) {
        fail_to_write(file, error.code().message());
    }
}

} // namespace velm
