#pragma once

namespace velm {

/// Lets SQLite open files that have no name yet: it follows no symbolic links when it opens, and the system's own way
/// to an open file, /proc/NUMBER/fd/NUMBER, looks like one. Throws SqliteError.
void let_sqlite_open_unnamed_files();

} // namespace velm
