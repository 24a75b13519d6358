#pragma once

#include "tests/support/test_folder.hpp"

namespace velm {

/// A file name in a folder of its own, both gone with the object.
class SessionFile {
public:
    SessionFile() = default; ///< nothing there yet
    explicit SessionFile(const std::string& content) { write(content); }

    [[nodiscard]] std::filesystem::path path() const { return folder_ / "river.jsonl"; }
    [[nodiscard]] std::string content() const { return content_of(path()); }
    void write(const std::string& content) const
    {
        std::filesystem::remove(path()); // a file that is emptied and written again goes to the disk at once: slow
        write_file(path(), content);
    }

private:
    TestFolder folder_;
};

/// Reads the whole session: "3 exchanges, closed", "2 exchanges, breaks off at line 4, column 1", or "after 2
/// exchanges: line 4, column 13: ..." for damage.
[[nodiscard]] std::string reading(const SessionFile& file);

/// `text` with `directory` cut out of it, so that it can be compared.
[[nodiscard]] std::string without(const std::string& directory, std::string text);

} // namespace velm
