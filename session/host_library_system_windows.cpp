#include "session/host_library.hpp"

#include <string>
#include <system_error>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace velm {
namespace {

constexpr WORD first_ordinal = 3; // of the call form with one value
constexpr WORD attach_ordinal = 100;

[[noreturn]] void fail(const std::string& what)
{
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), what);
}

template <class Procedure>
Procedure procedure(HMODULE library, WORD ordinal)
{
    return reinterpret_cast<Procedure>(reinterpret_cast<void*>(GetProcAddress(library, MAKEINTRESOURCEA(ordinal))));
}

} // namespace

HostLibrary load_host_library(const std::filesystem::path& file)
{
    const std::filesystem::path whole = std::filesystem::absolute(file);
    HMODULE const library = LoadLibraryExW(whole.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (library == nullptr) {
        fail("cannot load " + file.string());
    }
    HostLibrary host;
    for (std::size_t form = 0; form < host.exchange.size(); ++form) {
        const auto ordinal = static_cast<WORD>(first_ordinal + form);
        host.exchange[form] = procedure<HostLibrary::Procedure>(library, ordinal);
        if (host.exchange[form] == nullptr) {
            fail(file.string() + " has no procedure of ordinal " + std::to_string(ordinal));
        }
    }
    host.attach = procedure<decltype(host.attach)>(library, attach_ordinal);
    return host;
}

} // namespace velm
