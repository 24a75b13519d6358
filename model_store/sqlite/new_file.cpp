#include "model_store/sqlite/new_file.hpp"

#include "model_store/sqlite/open_model.hpp"
#include "plain_text/plain_text.hpp"

#include <memory>
#include <string>
#include <system_error>

namespace velm {

namespace {

namespace fs = std::filesystem;

/// SQLite's exclusive lock on a file, whatever it holds, without a look into it. It is free again with the object.
class ExclusiveLock {
public:
    explicit ExclusiveLock(const fs::path& file) : database_(file, SQLITE_OPEN_READWRITE)
    {
        sqlite3_file_control(database_.handle(), "main", SQLITE_FCNTL_FILE_POINTER, &file_);
        for (const int level : {SQLITE_LOCK_SHARED, SQLITE_LOCK_EXCLUSIVE}) {
            if (const int result = file_->pMethods->xLock(file_, level); result != SQLITE_OK) {
                unlock();
                throw SqliteError(result, sqlite3_errstr(result));
            }
        }
    }
    ~ExclusiveLock() { unlock(); }
    ExclusiveLock& operator=(ExclusiveLock&&) = delete; // neither copied nor moved

private:
    void unlock() { file_->pMethods->xUnlock(file_, SQLITE_LOCK_NONE); }

    Database database_;
    sqlite3_file* file_ = nullptr;
};

/// Keeps others from the database that stands in the place of `file`, if there is one.
std::unique_ptr<ExclusiveLock> lock_out_others(const WholeFile& file)
{
    try {
        if (fs::exists(file.place())) {
            return std::make_unique<ExclusiveLock>(file.place());
        }
    } catch (const SqliteError& error) {
        throw FileError(shown(file.name()) + " is in use: " + error.what() +
                        "; close the program that uses it, or give "
                        "another name");
    }
    return nullptr;
}

/// SQLite would play them back into the new database, wherever they come from.
void refuse_journals(const WholeFile& file)
{
    for (const char* const ending : {"-journal", "-wal"}) {
        const fs::path journal = fs::path(file.place()) += ending;
        std::error_code error;
        const fs::file_status status = fs::symlink_status(journal, error);
        if (status.type() == fs::file_type::none) {
            throw FileError(shown(file.name()) + " cannot be made: " + error.message() + " for its journal, " +
                            shown(journal) + "; give another name");
        }
        if (fs::exists(status)) {
            throw FileError(shown(file.name()) + " cannot be made, for there is a file " + shown(journal) +
                            " that would be played back into it; close the program that uses it, move the file away "
                            "if there is none, or give another name");
        }
    }
}

[[noreturn]] void fail_to_write(const fs::path& file, const std::string& reason)
{
    throw StoreError({file_problem(file, "cannot be written: " + printable(reason),
                                   "check that its folder can be written to and "
                                   "has room")},
                     false);
}

} // namespace

void change_unshared(const fs::path& file, ForeignKeys keys, const std::function<void(const Database&)>& change)
{
    const Database database(file, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    database.run(keys == ForeignKeys::bound ? "PRAGMA foreign_keys = ON" : "PRAGMA foreign_keys = OFF");
    // nobody else sees the file yet, so a journal on disk would protect nothing
    database.run("PRAGMA journal_mode = MEMORY; BEGIN");
    change(database);
    database.run("COMMIT");
}

NewFile::NewFile(const fs::path& file, Standing standing)
try : file_(file, standing) {
    const auto lock = lock_out_others(file_);
    refuse_journals(file_);
} catch (const std::system_error& error) {
    fail_to_write(file, error.code().message());
}

void NewFile::write(const std::function<void()>& step) const
{
    try {
        step();
    } catch (const SqliteError& error) {
        fail_to_write(file_.name(), error.what());
    } catch (const std::system_error& error) {
        fail_to_write(file_.name(), error.code().message());
    }
}

void NewFile::give_name()
{
    auto lock = lock_out_others(file_);
    refuse_journals(file_);
#if defined(_WIN32)
    lock.reset(); // a file that is open, by us or by others, is not replaced there
#endif
    write([this] { file_.put_in_place(); });
}

} // namespace velm
