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

/// A hard link fails where the name is taken, a rename would replace. File systems without links get the rename.
void link_or_rename(const fs::path& written, const fs::path& file)
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
    // nobody else sees the file yet, so a journal on disk would protect nothing; a RowWriter adds no pages that would
    // list the others, as automatic vacuuming needs them
    database.run("PRAGMA auto_vacuum = NONE; PRAGMA journal_mode = MEMORY; BEGIN");
    change(database);
    database.run("COMMIT");
}

NewFile::NewFile(const fs::path& file, TemporaryFiles temporary_files)
    : file_(file), temporary_files_(std::move(temporary_files))
{
    if (!temporary_files_.replace && fs::exists(fs::symlink_status(file))) {
        fail_as_existing(file);
    }
    write([this] { unnamed_ = temporary_files_.create(file_); });
}

NewFile::~NewFile()
{
    temporary_files_.discard(unnamed_);
}

void NewFile::write(const std::function<void()>& step) const
{
    try {
        step();
    } catch (const SqliteError& error) {
        fail_to_write(file_, error.what());
    } catch (const std::system_error& error) {
        fail_to_write(file_, error.code().message());
    }
}

void NewFile::give_name() const
{
    if (temporary_files_.replace) {
        write([this] { temporary_files_.replace(unnamed_, file_); });
    } else {
        link_or_rename(unnamed_, file_);
    }
}

} // namespace velm
