#pragma once

#include "plain_text/plain_text.hpp"

#include <filesystem>
#include <ostream>
#include <string>
#include <utility>

namespace velm {

/// The name of a file as the command line gives it. Joined to a message or printed, it is printable; what opens the
/// file takes it as it is.
class FileName {
public:
    FileName() = default;
    FileName(std::string name) : name_(std::move(name)) {} // NOLINT(google-explicit-constructor): names are strings
    FileName(const char* name) : name_(name) {}            // NOLINT(google-explicit-constructor)

    operator const std::string&() const { return name_; }           // NOLINT(google-explicit-constructor): to be opened
    operator std::filesystem::path() const { return name_; }        // NOLINT(google-explicit-constructor): to be opened
    [[nodiscard]] const std::string& text() const { return name_; } ///< for programs
    [[nodiscard]] std::string in_words() const { return printable(name_); }
    [[nodiscard]] bool empty() const { return name_.empty(); }

    friend std::string operator+(const FileName& name, const std::string& after)
    {
        return printable(name.name_) + after;
    }
    friend std::string operator+(const std::string& before, const FileName& name)
    {
        return before + printable(name.name_);
    }
    friend std::ostream& operator<<(std::ostream& out, const FileName& name) { return out << printable(name.name_); }

private:
    std::string name_; ///< in the file system's encoding
};

} // namespace velm
