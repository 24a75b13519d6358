#include "tests/session/session_file.hpp"

#include "session/session_reader.hpp"

namespace velm {

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
