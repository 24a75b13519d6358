#pragma once

#include <cstddef>

namespace velm {

/// Storage that the plug-in asks for while one of these lives ends at a page that nobody may touch: reading or writing
/// behind it ends the process. Takes the place of operator new in the whole program.
class GuardedStorage {
public:
    GuardedStorage();
    ~GuardedStorage();
    GuardedStorage& operator=(GuardedStorage&&) = delete; // neither copied nor moved

    /// Blocks asked for in this way and not given back yet.
    static std::size_t blocks();
};

/// What others than the plug-in ask for in between is not guarded.
class OrdinaryStorage {
public:
    OrdinaryStorage();
    ~OrdinaryStorage();
    OrdinaryStorage& operator=(OrdinaryStorage&&) = delete; // neither copied nor moved

private:
    bool guarded_;
};

} // namespace velm
