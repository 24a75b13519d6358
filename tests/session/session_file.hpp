#pragma once

#include <filesystem>
#include <string>

namespace velm {

/// A file name in a directory of its own, both gone with the object.
class SessionFile {
public:
    explicit SessionFile(const std::string& content);
    SessionFile(); ///< nothing there yet
    ~SessionFile();
    SessionFile(const SessionFile&) = delete;
    SessionFile& operator=(const SessionFile&) = delete;
    SessionFile(SessionFile&&) = delete;
    SessionFile& operator=(SessionFile&&) = delete;

    [[nodiscard]] std::filesystem::path path() const { return directory_ / "river.jsonl"; }
    [[nodiscard]] std::string content() const;
    void write(const std::string& content) const;

private:
    std::filesystem::path directory_;
};

/// Reads the whole session: "3 exchanges, closed", "2 exchanges, breaks off at line 4, column 1", or "after 2
/// exchanges: line 4, column 13: ..." for damage.
[[nodiscard]] std::string reading(const SessionFile& file);

/// `text` with `directory` cut out of it, so that it can be compared.
[[nodiscard]] std::string without(const std::string& directory, std::string text);

} // namespace velm
