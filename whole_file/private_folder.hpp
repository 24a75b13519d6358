#pragma once

#include "whole_file/descriptor.hpp"

#include <string>

#include <sys/types.h>

namespace velm {

/// Whether `name` in an open folder is the file or folder that is `opened`.
[[nodiscard]] bool leads_to(int folder, const char* name, int opened);

/// A folder beside a file to come, with room for one file, "content". Only this user may enter it, where the file
/// system has permissions. Both are removed with the object, by exit, and by signals that end a process; what anybody
/// else has put in their place stays.
class PrivateFolder {
public:
    /// `parent` is open and outlives the object. Throws std::system_error.
    explicit PrivateFolder(int parent);
    ~PrivateFolder();
    PrivateFolder& operator=(PrivateFolder&&) = delete; // neither copied nor moved

    /// Makes "content"; the descriptor is invalid, and errno set, when that fails. It outlives the object.
    [[nodiscard]] Descriptor make_content(mode_t mode) const;
    /// An open file that has been linked to "content" and outlives the object.
    void hold(int content) const;
    [[nodiscard]] int number() const { return folder_.number(); }

private:
    int parent_;
    std::string name_;
    Descriptor folder_;
};

/// Signals are kept from the process.
class SignalsHeld {
public:
    SignalsHeld();
    ~SignalsHeld();
    SignalsHeld& operator=(SignalsHeld&&) = delete; // neither copied nor moved

private:
    sigset_t before_{};
};

} // namespace velm
