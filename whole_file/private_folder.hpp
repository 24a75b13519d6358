#pragma once

#include "whole_file/descriptor.hpp"

#include <string>

#include <csignal>

#include <sys/types.h>

namespace velm {

/// A folder beside a file to come, with room for one file, "content". Only this user may enter it. Both are removed
/// with the object, by exit, and by signals that end a process; what anybody else has put in their place stays.
class PrivateFolder {
public:
    /// `parent` is open and outlives the object. Throws std::system_error.
    explicit PrivateFolder(int parent);
    ~PrivateFolder();
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;
    PrivateFolder(PrivateFolder&&) = delete;
    PrivateFolder& operator=(PrivateFolder&&) = delete;

    /// Makes "content"; the descriptor is invalid, and errno set, when that fails.
    [[nodiscard]] Descriptor make_content(mode_t mode) const;
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
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;
    SignalsHeld(SignalsHeld&&) = delete;
    SignalsHeld& operator=(SignalsHeld&&) = delete;

private:
    sigset_t before_{};
};

} // namespace velm
