#include "tests/session/session_file.hpp"

#include "session/session_reader.hpp"

#include <fstream>
#include <random>
#include <sstream>

namespace velm {

SessionFile::SessionFile()
    : directory_(std::filesystem::temp_directory_path() / ("velm-session-" + std::to_string(std::random_device()())))
{
    std::filesystem::create_directory(directory_);
}

SessionFile::SessionFile(const std::string& content) : SessionFile()
{
    write(content);
}

SessionFile::~SessionFile()
{
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
}

std::string SessionFile::content() const
{
    std::ifstream file(path(), std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

void SessionFile::write(const std::string& content) const
{
    std::filesystem::remove(path()); // a file that is emptied and written again goes to the disk at once: slow
    std::ofstream(path(), std::ios::binary) << content;
}

std::string without(const std::string& directory, std::string text)
{
    for (auto at = text.find(directory); at != std::string::npos; at = text.find(directory)) {
        text.erase(at, directory.size());
    }
    return text;
}

std::string reading(const SessionFile& file)
{
    const std::string name = file.path().string() + ", ";
    std::size_t exchanges = 0;
    try {
        SessionReader session(file.path());
        while (session.next() != nullptr) {
            ++exchanges;
        }
        return std::to_string(exchanges) + " exchanges, " +
               (session.is_closed() ? "closed" : "breaks off at " + without(name, session.end_in_words()));
    } catch (const SessionError& error) {
        return "after " + std::to_string(exchanges) + " exchanges: " + without(name, error.what());
    }
}

} // namespace velm
